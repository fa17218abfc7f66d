#include "window/SetBandWidthLimitDlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>
#include <limits>

CLimitField::CLimitField(const QString& name) {
    setAccessibleName(name);
    setMinimumWidth(128);
    SetValue(0);
}

int CLimitField::Value() const {
    return text().toInt();
}

void CLimitField::SetValue(int value) {
    lineEdit()->setText(QString::number(value));
}

void CLimitField::ShowRead(const std::optional<int>& value) {
    m_unread = !value;
    lineEdit()->setPlaceholderText(m_unread ? tr("not read") : QString());
    lineEdit()->setText(value ? QString::number(*value) : QString());
}

std::optional<int> CLimitField::Wanted() const {
    return m_unread && text().isEmpty() ? std::nullopt : std::optional(Value());
}

void CLimitField::stepBy(int steps) {
    const qint64 wanted = Value() + qint64(steps) * Step;
    SetValue(static_cast<int>(std::clamp<qint64>(wanted, 0, std::numeric_limits<int>::max())));
    selectAll();
}

QValidator::State CLimitField::validate(QString& text, int& /*position*/) const {
    if (text.isEmpty())
        return QValidator::Intermediate;
    const bool digits = std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    bool fits = false;
    text.toInt(&fits);
    return digits && fits ? QValidator::Acceptable : QValidator::Invalid;
}

QAbstractSpinBox::StepEnabled CLimitField::stepEnabled() const {
    StepEnabled enabled = StepNone;
    if (Value() > 0)
        enabled |= StepDownEnabled;
    if (Value() < std::numeric_limits<int>::max())
        enabled |= StepUpEnabled;
    return enabled;
}

CSetBandWidthLimitDlg::CSetBandWidthLimitDlg(QWidget* parent)
    : QDialog(parent), m_upload(new CLimitField(tr("Upload limit"))),
      m_download(new CLimitField(tr("Download limit"))) {
    setWindowTitle(tr("Bandwidth Limit"));
    auto* form = new QFormLayout(this);
    form->setContentsMargins(16, 16, 16, 16);
    form->setSpacing(12);
    form->addRow(tr("&Upload limit (KB/S)"), m_upload);
    form->addRow(tr("&Download limit (KB/S)"), m_download);
    form->addRow(new QLabel(tr("0 means that there is no limit.")));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_upload->setEnabled(false);
    m_download->setEnabled(false);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_ok->setEnabled(false);
}

void CSetBandWidthLimitDlg::SetLimits(const Limits& limits) {
    m_upload->ShowRead(limits.upload);
    m_download->ShowRead(limits.download);
    m_upload->setEnabled(true);
    m_download->setEnabled(true);
    m_ok->setEnabled(true);
    m_upload->setFocus();
    m_upload->selectAll();
}
