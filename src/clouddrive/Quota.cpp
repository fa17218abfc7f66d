#include "clouddrive/Quota.h"

#include "page/Console.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>

namespace {

QLabel* AddField(QFormLayout& form, const QString& label) {
    auto* field = new QLabel;
    field->setTextFormat(Qt::PlainText);
    field->setTextInteractionFlags(Qt::TextSelectableByMouse);
    field->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    form.addRow(label, field);
    return field;
}

QuotaTexts ReadQuota(const ServiceClient& service, std::stop_token stop) {
    const ServiceAnswer answer = RequestQuota(service, std::move(stop));
    const auto quota = answer ? ParseQuota(answer.body) : std::nullopt;
    return quota ? TextsOf(*quota) : QuotaTexts();
}

} // namespace

CQuota::CQuota(const Console& console, QWidget* parent) : QDialog(parent), m_loader(console.reader, *this) {
    setWindowTitle(tr("Account Quota"));
    setMinimumWidth(360);
    auto* form = new QFormLayout(this);
    form->setContentsMargins(16, 16, 16, 16);
    form->setSpacing(12);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    m_total = AddField(*form, tr("Total Account Quota:"));
    m_used = AddField(*form, tr("Quota Used:"));
    m_available = AddField(*form, tr("Quota Available:"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
}

void CQuota::Open(const Console& console, QWidget* parent) {
    auto* dialog = new CQuota(console, parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
    dialog->m_loader.Load(
        Lane::Service,
        [service = console.service](std::stop_token stop) { return ReadQuota(service, std::move(stop)); },
        [dialog](const Loaded<QuotaTexts>& texts) {
            if (texts)
                dialog->Show(*texts);
        });
}

void CQuota::Show(const QuotaTexts& texts) {
    m_total->setText(texts.total);
    m_used->setText(texts.used);
    m_available->setText(texts.available);
}
