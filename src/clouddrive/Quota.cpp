#include "clouddrive/Quota.h"

#include "page/Console.h"
#include "page/NoticeLine.h"

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

} // namespace

CQuota::CQuota(const Console& console, QWidget* parent)
    : QDialog(parent), m_loader(console.reader, *this), m_notice(new NoticeLine) {
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
    form->addRow(m_notice);
    form->addRow(buttons);
}

CQuota::Facts CQuota::Read(const ServiceClient& service, std::stop_token stop) {
    const ServiceAnswer answer = RequestQuota(service, std::move(stop));
    const auto quota = answer ? ParseQuota(answer.body) : std::nullopt;
    if (!answer && answer.outcome != ServiceOutcome::OtherStatus)
        return {{}, tr("The service does not answer, so the quota is not known.")};
    if (!quota)
        return {{}, tr("The service does not tell the account's quota.")};
    const QuotaTexts texts = TextsOf(*quota);
    return {texts, texts.total.isEmpty() ? tr("The account has no quota of more than 1 MB.") : QString()};
}

void CQuota::Open(const Console& console, QWidget* parent) {
    auto* dialog = new CQuota(console, parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
    dialog->m_loader.Load(
        Lane::Service,
        [service = console.service](std::stop_token stop) { return Read(service, std::move(stop)); },
        [dialog](const Loaded<Facts>& facts) {
            if (facts)
                dialog->Show(*facts);
        });
}

void CQuota::Show(const Facts& facts) {
    m_total->setText(facts.texts.total);
    m_used->setText(facts.texts.used);
    m_available->setText(facts.texts.available);
    m_notice->SetText(facts.remark);
    adjustSize();
}
