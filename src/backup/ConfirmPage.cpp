#include "backup/ConfirmPage.h"

#include "backup/TargetPage.h"
#include "clouddrive/SetKeyDlg.h"
#include "look/Look.h"
#include "mail/EmailDlg.h"
#include "page/Console.h"
#include "page/LinkLabel.h"
#include "page/NoticeLine.h"
#include "service/CloudFolders.h"
#include "wizard/BrenPropertySheet.h"
#include "wizard/Form.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShowEvent>
#include <QSpinBox>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int LeastTextHeight = 76;
constexpr int Gap = 6;

QLabel* MakeWords(const QString& text, QWidget* buddy = nullptr) {
    auto* words = new QLabel(text);
    words->setTextFormat(Qt::PlainText);
    words->setBuddy(buddy);
    return words;
}

QHBoxLayout* MakeRow(const QString& label, QSpinBox* number, const QString& unit) {
    auto* row = new QHBoxLayout;
    row->setSpacing(Gap);
    row->addWidget(MakeWords(label, number));
    row->addWidget(number);
    row->addWidget(MakeWords(unit));
    row->addStretch();
    return row;
}

QSpinBox* MakeNumber(int least, const QString& name) {
    auto* number = new QSpinBox;
    number->setRange(least, MostBackups);
    number->setAccessibleName(name);
    number->setCorrectionMode(QAbstractSpinBox::CorrectToNearestValue);
    return number;
}

} // namespace

ConfirmLink ScheduleLink(const WizardPage& schedulePage, std::shared_ptr<const BackupSchedule> schedule,
                         ScheduleForm form) {
    return {[schedule = std::move(schedule), form] {
                return u"<a>"_s + ConfirmedTexts(*schedule, form).summary + u"</a>"_s;
            },
            [&schedulePage](ConfirmPage& page) { page.GoBack(schedulePage); }};
}

ConfirmLink MailLink(const Console& console) {
    return {[] { return u"<a>"_s + ConfirmPage::tr("Email Notification") + u"</a>"_s; },
            [&console](ConfirmPage& page) {
                (new CEmailDlg(console.service, console.reader, console.prompts, page.window()))
                    ->Open(console.settingNews);
            }};
}

ConfirmPage::ConfirmPage(const Console& console, ConfirmPlan plan)
    : WizardPage(plan.title, plan.subtitle), m_console(console), m_plan(std::move(plan)), m_sender(console),
      m_names(console.reader, *this), m_target(console.reader, *this), m_notice(new NoticeLine),
      m_form(new Form), m_name(new QLineEdit), m_text(new QPlainTextEdit),
      m_fullEvery(MakeNumber(1, tr("Create a Full Backup every"))), m_keep(MakeNumber(0, tr("Keep Last"))),
      m_keepRemark(MakeWords({})), m_encrypt(new QCheckBox(tr("&Encrypt Backup Data"))) {
    m_form->Add(tr("Task &Name"), m_name, Form::Need::Required);
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setAccessibleName(tr("What will be done"));
    m_text->setFont(Look::Font(Look::Small));
    m_text->setMinimumHeight(LeastTextHeight);
    m_text->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored); // it gets what the others leave
    m_fullEvery->setValue(m_plan.retention->fullEvery);
    m_keep->setValue(m_plan.retention->keep);

    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Gap);
    column->addWidget(m_notice);
    column->addWidget(m_form);
    column->addWidget(m_text, 1);
    MakeLinks(*content);
    if (m_plan.below)
        column->addWidget(m_plan.below);
    column->addWidget(MakeRetention());
    column->addWidget(m_encrypt);

    SetScrolled(content);

    const auto edited = [this] {
        TakeFields();
        ShowDraft();
        emit Edited();
    };
    connect(m_name, &QLineEdit::textChanged, this, edited);
    connect(m_fullEvery, &QSpinBox::valueChanged, this, edited);
    connect(m_keep, &QSpinBox::valueChanged, this, edited);
    connect(m_encrypt, &QCheckBox::toggled, this, edited);
}

void ConfirmPage::MakeLinks(QWidget& column) {
    for (const ConfirmLink& link : m_plan.links) {
        auto* label = new LinkLabel;
        label->setWordWrap(true);
        m_links.push_back(label);
        column.layout()->addWidget(label);
        connect(label, &LinkLabel::LinkClicked, this, [this, open = link.open] { open(*this); });
    }
}

QWidget* ConfirmPage::MakeRetention() {
    m_keepRemark->setFont(Look::Font(Look::Caption));
    Look::SetInk(*m_keepRemark, Look::Muted);
    auto* retention = new QWidget;
    auto* column = new QVBoxLayout(retention);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    // One below the other: side by side they are wider than a small screen leaves.
    column->addLayout(MakeRow(tr("Create a &Full Backup every"), m_fullEvery, tr("Backups")));
    column->addLayout(MakeRow(tr("&Keep Last"), m_keep, tr("Snapshots")));
    column->addWidget(m_keepRemark);
    return retention;
}

void ConfirmPage::showEvent(QShowEvent* event) {
    WizardPage::showEvent(event);
    if (!event->spontaneous())
        ++m_visits;
}

void ConfirmPage::Fill() {
    ProposeName();
    TakeFields();
    ShowDraft();
    if (m_plan.shown)
        m_plan.shown();
    ReadNames();
    ReadTarget();
}

void ConfirmPage::ProposeName() {
    if (m_plan.proposedName && m_name->text() != m_proposed)
        return;
    m_name->setText(m_plan.proposedName ? m_plan.proposedName() : *m_plan.name);
    m_proposed = m_name->text();
    m_name->setCursorPosition(0);
}

void ConfirmPage::TakeFields() {
    *m_plan.name = m_name->text();
    *m_plan.retention = {m_fullEvery->value(), m_keep->value()};
    *m_plan.encrypted = m_encrypt->isChecked();
}

void ConfirmPage::ShowDraft() {
    if (const QString text = m_plan.text().replace("\r\n"_L1, "\n"_L1); text != m_text->toPlainText())
        m_text->setPlainText(text);
    for (std::size_t i = 0; i < m_links.size(); ++i)
        m_links[i]->SetText(m_plan.links[i].text());
    ShowRemarks();
}

void ConfirmPage::ShowRemarks() {
    const qsizetype same = m_listed.IdsOf(ListedName(*m_plan.name, *m_plan.encrypted)).size();
    m_form->SetRemark(*m_name, same ? tr("There is a task of this name already.") : QString());
    const int keep = m_plan.retention->keep;
    const QString meaning = keep ? tr("Keeps the last %1. 0 keeps all.").arg(keep) : tr("0 keeps all.");
    m_keepRemark->setText(meaning);
    m_keep->setAccessibleDescription(meaning);
}

void ConfirmPage::ReadNames() {
    m_names.Load(
        Lane::Databases, [](std::stop_token stop) { return ListTasks(std::move(stop)); },
        [this](const Loaded<ListedTasks>& listed) {
            if (!listed || !listed->read)
                return;
            m_listed = *listed;
            ShowRemarks();
        });
}

void ConfirmPage::ReadTarget() {
    m_notice->SetText({});
    m_target.Load(
        Lane::Service,
        [service = m_console.service, target = *m_plan.target](const std::stop_token& stop) {
            return TargetFailure(service, target, stop);
        },
        [this](const Loaded<QString>& failure) {
            if (failure && !failure->isEmpty())
                m_notice->SetText(*failure);
        });
}

void ConfirmPage::GoBack(const WizardPage& page) {
    Sheet().GoBackTo(page);
}

void ConfirmPage::Leave() {
    TakeFields();
    if (const QString refusal = m_plan.refusal(); !refusal.isEmpty())
        return Sheet().Stay({refusal, TaskNameRefusal(*m_plan.name).isEmpty() ? nullptr : m_name});
    if (!*m_plan.encrypted)
        return Send();
    Sheet().Check(
        Lane::Service, tr("Asking whether there is an encryption password..."),
        [service = m_console.service](std::stop_token stop) {
            return ReadPasswordState(service, std::move(stop));
        },
        [this](const Loaded<PasswordState>& state) {
            switch (state.value.value_or(PasswordState::NotRead)) {
            case PasswordState::Set:
                return Send();
            case PasswordState::Missing:
                return AskForKey();
            case PasswordState::NotRead:
                return Sheet().Stay({tr("The service does not tell whether there is an encryption password. "
                                        "Nothing was sent.")});
            }
        });
}

void ConfirmPage::AskForKey() {
    auto* dialog = new CSetKeyDlg(m_console.service, m_console.reader, m_console.prompts, window());
    dialog->SetFailureLead(m_plan.keyFailure);
    connect(dialog, &QDialog::finished, this, [this](int result) {
        if (result == QDialog::Accepted)
            Send();
        else
            Sheet().Stay();
    });
    dialog->Open(m_console.settingNews);
}

void ConfirmPage::Send() {
    const NewTask task = m_plan.task();
    m_sender.Send(Sheet(), task, m_plan.createFailure, m_listed.IdsOf(task.name));
}
