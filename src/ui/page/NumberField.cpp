#include "page/NumberField.h"

#include <QLineEdit>

#include <algorithm>
#include <limits>

NumberField::NumberField() {
    setMinimumWidth(128);
}

std::optional<int> NumberField::Value() const {
    bool isInteger = false;
    const int value = text().toInt(&isInteger);
    return isInteger ? std::optional(value) : std::nullopt;
}

void NumberField::SetValue(int value) {
    lineEdit()->setText(QString::number(value));
}

void NumberField::stepBy(int steps) {
    const qint64 wanted = Value().value_or(0) + qint64(steps) * Step;
    SetValue(static_cast<int>(std::clamp<qint64>(wanted, 0, std::numeric_limits<int>::max())));
    selectAll();
}

QValidator::State NumberField::validate(QString& text, int& /*position*/) const {
    if (text.isEmpty())
        return QValidator::Intermediate;
    const bool digits = std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    bool fits = false;
    text.toInt(&fits);
    return digits && fits ? QValidator::Acceptable : QValidator::Invalid;
}

QAbstractSpinBox::StepEnabled NumberField::stepEnabled() const {
    const int value = Value().value_or(0);
    StepEnabled enabled = StepNone;
    if (value > 0)
        enabled |= StepDownEnabled;
    if (value < std::numeric_limits<int>::max())
        enabled |= StepUpEnabled;
    return enabled;
}
