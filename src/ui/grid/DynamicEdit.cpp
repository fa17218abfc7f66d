#include "grid/DynamicEdit.h"

#include <QIntValidator>

#include <limits>

CDynamicEdit::CDynamicEdit(const QString& text, ServiceClient::ValueType type, QWidget* parent)
    : QLineEdit(parent) {
    using Range = std::numeric_limits<qint32>;
    if (type == ServiceClient::ValueType::Integer) {
        auto* validator = new QIntValidator(Range::min(), Range::max(), this);
        QLocale plain = QLocale::c();
        plain.setNumberOptions(QLocale::RejectGroupSeparator);
        validator->setLocale(plain);
        setValidator(validator);
    }
    setMaxLength(std::numeric_limits<int>::max());
    setText(text);
    selectAll();
}

std::optional<QString> CDynamicEdit::Text() const {
    return hasAcceptableInput() ? std::optional(text()) : std::nullopt;
}
