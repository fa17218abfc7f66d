// Labels: threads
#include "Shell.h"
#include "devservice/MailServer.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

class MailCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void settings_data() {
        const Columns<QString, QString, CtlExit, QStringList, QByteArray> row("line", "fault", "exit",
                                                                              "requests", "said");
        using enum CtlExit;
        const auto put = [](const char* name, const char* value) {
            return u"PUT /settings/%1?ValueType=%2"_s.arg(QLatin1String(name), QLatin1String(value));
        };
        const QString success = put("SuccNotification", "4&Value=True");
        const QString failure = put("FailNotification", "4&Value=False");
        const QString address = put("EmailNotification", "2&Value=a@b");
        row("all", "set a@b --failure off --success on", {}, Done, {success, failure, address}, {});
        row("address", "set a@b", {}, Done, {address}, {});
        row("remark", "set a+b@c", {}, Done, {put("EmailNotification", "2&Value=a+b@c")}, "\"+\"");
        row("no address", "set ab --success on", {}, Usage, {}, "Not a valid email address.");
        row("choice", "set a@b --success maybe", {}, Usage, {}, "on, off");
        row("not taken", "set a@b --failure off", "deny:403@Fail", Refused, {failure}, "403");
        row("down", "set a@b", "refuse", Unreachable, {}, "not reachable");
        row("show", "show", {}, Done, {},
            "ADDRESS           SUCCESS  FAILURE\nmara@example.org  no       yes");
        row("show as JSON", "show --json", {}, Done, {},
            R"([{"address":"mara@example.org","success":false,"failure":true}])");
        row("show refused", "show --json", "status:500", Refused, {}, "500");
    }

    void settings() {
        const auto [line, fault, exit, requests, said] =
            Fetched<QString, QString, CtlExit, QStringList, QByteArray>();
        ServiceFixture service;
        service->SetSetting("EmailNotification", "mara@example.org");
        service->SetSetting("FailNotification", "True");
        QVERIFY(fault.isEmpty() || service->SetFault(fault.toStdString()));
        const Run run = Btaskctl(QStringList{u"mail"_s} + line.split(u' '));
        QCOMPARE(run.exit, exit);
        QVERIFY2((run.out + run.error).contains(said), (run.out + run.error).constData());
        if (!line.startsWith("show"_L1))
            QCOMPARE(service.RequestLines(), requests);
    }

    void nothingSetIsNull() {
        const ServiceFixture service;
        QCOMPARE(QJsonDocument(Json({u"mail"_s, u"show"_s})).toJson(QJsonDocument::Compact),
                 QByteArray(R"([{"address":null,"failure":false,"success":false}])"));
    }

    void tests_data() {
        const Columns<QByteArray, CtlExit, QByteArray, QByteArray> row("recipient", "exit", "out", "error");
        using enum CtlExit;
        const QByteArray talk = "Talking to 127.0.0.1";
        const QByteArray steps = talk + "...\n" + talk + ": greeting\n" + talk + ": HELO\n" + talk +
                                 ": MAIL FROM\n" + talk + ": RCPT TO\n";
        row("taken", "250 OK\r\n", Done,
            steps + talk + ": DATA\n" + talk +
                ": message\nTest Email sent, please check your email account.\naccepted by 127.0.0.1 (250 "
                "OK, "
                "kept)\n",
            {});
        row("refused", "550 no\r\n", Refused, steps + talk + ": RSET\n",
            "Failed to send email.\n\n\n550 no\n127.0.0.1, step RCPT TO: it was refused (550 no).\n");
    }

    void tests() {
        const auto [recipient, exit, out, error] = Fetched<QByteArray, CtlExit, QByteArray, QByteArray>();
        devservice::MailServer server;
        server.SetAnswer("RCPT", recipient.toStdString());
        qputenv("BREN_MAIL_HOSTS", "127.0.0.1:" + QByteArray::number(server.Port()));
        const Run run = Btaskctl({u"mail"_s, u"test"_s, u"a@b"_s});
        QCOMPARE(Btaskctl({u"mail"_s, u"test"_s, u"a<@b"_s}).exit, CtlExit::Usage);
        qunsetenv("BREN_MAIL_HOSTS");
        QCOMPARE(run.exit, exit);
        QCOMPARE(run.out, out);
        QCOMPARE(run.error, error);
    }
};

BTASK_TEST(MailCommandsTest);
#include "MailCommandsTest.moc"
