#include "mail/EmailDlg.h"

#include "lanes/ProgressNote.h"
#include "page/UserPrompts.h"
#include "service/KnownSettings.h"
#include "smtp/MailAddress.h"
#include "smtp/TestMail.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace {

QString Caption(CEmailDlg::Notifies notifies) {
    return notifies == CEmailDlg::Notifies::SnapshotBackup
               ? CEmailDlg::tr("Email Notification for Snapshot Backup")
               : CEmailDlg::tr("Email Notification");
}

} // namespace

CEmailDlg::CEmailDlg(const ServiceClient& service, Reader& reader, UserPrompts& prompts, QWidget* parent,
                     Notifies notifies)
    : SettingsDialog(service, reader, Caption(notifies), parent), m_prompts(prompts),
      m_tester(reader, *this) {
    AddNote(tr("The service can send an email when a backup task has ended."));
    AddCheck(Settings::SuccNotification, tr("Send an email when a task &succeeds"));
    AddCheck(Settings::FailNotification, tr("Send an email when a task &fails"));
    m_address = AddText(Settings::EmailNotification, tr("&Email address:"));
    auto* test = new QPushButton(tr("&Test"));
    test->setToolTip(tr("Sends an email to this address now, so that you see whether it arrives."));
    auto* row = new QWidget;
    auto* buttons = new QHBoxLayout(row);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->addWidget(test);
    buttons->addStretch();
    AddRow({}, row);
    connect(test, &QPushButton::clicked, this, &CEmailDlg::Test);
}

QString CEmailDlg::Refusal() const {
    const QString refusal = AddressRefusal(m_address->text());
    return refusal.isEmpty() ? SettingsDialog::Refusal() : refusal;
}

void CEmailDlg::Test() {
    if (m_box)
        return;
    const QString address = m_address->text();
    const QString refusal = AddressRefusal(address);
    ShowRemark(refusal);
    if (!refusal.isEmpty())
        return m_address->setFocus();
    const auto note = std::make_shared<ProgressNote>();
    m_box = m_prompts.ShowOperation(this, {.title = windowTitle(),
                                           .text = tr("Sending a test email to %1").arg(address),
                                           .progress = note,
                                           .cancel = [this] { m_tester.Cancel(); }});
    m_tester.Load(
        Lane::Network,
        [address, note](const std::stop_token& stop) {
            return SendTestMail(
                address, [&note](const QString& step) { note->Tell({.text = step}); }, stop);
        },
        [this](const Loaded<TestMailResult>& result) {
            m_box.reset();
            if (result)
                m_prompts.ShowMessage(this, result->Words());
            else
                ShowRemark(tr("The test was cancelled."));
        });
}
