#include "mail/EmailDlg.h"
#include "devservice/MailServer.h"
#include "lanes/ProgressNote.h"
#include "page/NoticeLine.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

struct MailFixture : PageFixture<> {
    MailFixture() {
        service->SetSetting("EmailNotification", "mara@example.org");
        service->SetSetting("FailNotification", "TRUE");
        qputenv("BREN_MAIL_HOSTS", "127.0.0.1:" + QByteArray::number(server.Port()));
    }
    MailFixture(const MailFixture&) = delete;
    MailFixture& operator=(const MailFixture&) = delete;
    ~MailFixture() { qunsetenv("BREN_MAIL_HOSTS"); }

    void Show() {
        dialog->Open(settingNews);
        reader.StepAll();
        service->ForgetRequests();
    }
    template <typename Widget>
    Widget* Find(const QString& text) const {
        for (Widget* each : dialog->findChildren<Widget*>())
            if (each->text().remove(u'&') == text)
                return each;
        return nullptr;
    }
    QLineEdit* Address() const { return dialog->findChild<QLineEdit*>(); }
    void Type(const QString& address) {
        Address()->selectAll();
        QTest::keyClick(Address(), Qt::Key_Delete);
        QTest::keyClicks(Address(), address);
    }
    void PressTest() { QTest::mouseClick(Find<QPushButton>(u"Test"_s), Qt::LeftButton); }
    void Ok() {
        QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
        reader.StepAll();
    }
    QString Notice() const { return dialog->findChild<NoticeLine*>()->Text(); }
    QStringList Written() const {
        return service.RequestLines()
            .filter(QRegularExpression(u"^PUT "_s))
            .replaceInStrings(u"PUT /settings/"_s, QString());
    }

    devservice::MailServer server;
    QPointer<CEmailDlg> dialog = new CEmailDlg(client, reader, prompts);
};

} // namespace

class EmailDlgTest : public QObject {
    Q_OBJECT

private slots:
    void whatWasChangedIsWrittenInOrder_data() {
        const Columns<QString, bool, bool, QStringList, QString> row("address", "success", "failure",
                                                                     "written", "notice");
        const QString success = u"SuccNotification?ValueType=4&Value=True"_s;
        const QString failure = u"FailNotification?ValueType=4&Value=False"_s;
        const QString address = u"EmailNotification?ValueType=2&Value=jan@example.net"_s;
        row("nothing", "mara@example.org", false, true, {}, {});
        row("all", "jan@example.net", true, false, {success, failure, address}, {});
        row("one", "mara@example.org", false, false, {failure}, {});
        row("none", "", true, false, {}, "You need to enter an email address");
        row("no address", "jan", true, false, {}, "Not a valid email address.");
        row("brackets", "<jan@example.net>", true, false, {}, "Not a valid email address.");
    }

    void whatWasChangedIsWrittenInOrder() {
        const auto [address, success, failure, written, notice] =
            Fetched<QString, bool, bool, QStringList, QString>();
        MailFixture fixture;
        fixture.Show();
        auto* onSuccess = fixture.Find<QCheckBox>(u"Send an email when a task succeeds"_s);
        auto* onFailure = fixture.Find<QCheckBox>(u"Send an email when a task fails"_s);
        QCOMPARE(fixture.Address()->text(), u"mara@example.org"_s);
        QVERIFY(!onSuccess->isChecked() && onFailure->isChecked());
        onSuccess->setChecked(success);
        onFailure->setChecked(failure);
        fixture.Type(address);
        fixture.Ok();
        QCOMPARE(fixture.Written(), written);
        if (notice.isEmpty())
            QTRY_VERIFY(!fixture.dialog);
        else
            QCOMPARE(fixture.Notice(), notice);
    }

    void theTestGoesToWhatStandsInTheField() {
        MailFixture fixture;
        fixture.Show();
        fixture.Type(u"jan"_s);
        fixture.PressTest();
        QCOMPARE(fixture.Notice(), u"Not a valid email address."_s);
        fixture.Type(u"jan@example.net"_s);
        fixture.prompts.ExpectOperation(u"Sending a test email to jan@example.net"_s);
        fixture.PressTest();
        const auto progress = fixture.prompts.operation->progress;
        fixture.PressTest(); // once at a time
        fixture.prompts.ExpectMessage(u"Test Email sent, please check your email account.\n"
                                      "accepted by 127.0.0.1 (250 OK, kept)"_s);
        fixture.reader.StepAll();
        QVERIFY(fixture.prompts.IsPlayed() && !fixture.prompts.operation);
        QCOMPARE(progress->Read().text, u"Talking to 127.0.0.1: message"_s);
        QVERIFY(fixture.server.Mails().at(0).find("To: <jan@example.net>") != std::string::npos);
        QCOMPARE(fixture.Written(), QStringList());

        fixture.server.SetAnswer("RCPT", "550 no such user\r\n");
        fixture.prompts.ExpectOperation(u"Sending a test email to jan@example.net"_s);
        fixture.PressTest();
        fixture.prompts.ExpectMessage(u"Failed to send email.\n\n\n550 no such user\n"
                                      "127.0.0.1, step RCPT TO: it was refused (550 no such user)."_s);
        fixture.reader.StepAll();
        QCOMPARE(fixture.Address()->text(), u"jan@example.net"_s);
    }

    void aTestIsCancelled() {
        MailFixture fixture;
        fixture.Show();
        fixture.prompts.ExpectOperation(u"Sending a test email to mara@example.org"_s);
        fixture.PressTest();
        fixture.prompts.operation->cancel();
        fixture.reader.StepAll();
        QVERIFY(!fixture.prompts.operation);
        QCOMPARE(fixture.Notice(), u"The test was cancelled."_s);
        QVERIFY(fixture.server.Mails().empty());
    }

    void theCaptionSaysWhoseTheyAre() {
        MailFixture fixture;
        QCOMPARE(fixture.dialog->windowTitle(), u"Email Notification"_s);
        const CEmailDlg snapshots(fixture.client, fixture.reader, fixture.prompts, nullptr,
                                  CEmailDlg::Notifies::SnapshotBackup);
        QCOMPARE(snapshots.windowTitle(), u"Email Notification for Snapshot Backup"_s);
        delete fixture.dialog;
    }
};

BTASK_TEST(EmailDlgTest);
#include "EmailDlgTest.moc"
