// Labels: threads
#include "Shell.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QJsonObject>

#include <future>

using namespace Qt::Literals::StringLiterals;

/// What the shell tells of virtual directories and does to them.
class DirectoryCommandsTest : public QObject {
    Q_OBJECT

    /// One that the service knows, so that a login may go well.
    static constexpr char Provider[] = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";

private slots:
    void init() {
        m_service = std::make_unique<ServiceFixture>();
        Service()->SetVirtualDirectories(
            {{"Photos", "{C}", 1, Provider}, {"Plans", "{C}", 1, Provider}, {"A&B", "{C&D}", 7, Provider}});
    }

    void cleanup() { m_service.reset(); }

    void sendsWhatTheWindowSends_data() {
        // Behind the list's request, which every line begins with.
        const Columns<QString, CtlExit, QStringList> row("line", "exit", "sent");
        using enum CtlExit;
        row("vdir|dismount|photos", Done, {u"GET /profile/?PMCMethod=RemoveNode"_s});
        row("vdir|dismount|A&B", Usage, {});
        row("vdir|dismount|Photo", Refused, {});
        row("vdir|login|A&B", Usage, {});
        row("vdir|rename|photos|Pictures (2)", Done,
            {u"MOVE /resources/Photos?Destination=/resources/Pictures%20(2)"_s});
        row("vdir|rename|photos|PHOTOS", Done, {u"MOVE /resources/Photos?Destination=/resources/PHOTOS"_s});
        row("vdir|rename|Photos|Photos", Done, {});
        row("vdir|rename|photos|a&b", Usage, {});
        row("vdir|rename|photos|plans", Refused, {});
        row("vdir|rename|A&B|photos", Refused, {});
        row("vdir|rename|none|c", Refused, {});
        row("card|A&B", Refused, {});
        row("card|none", Refused, {});
    }

    void sendsWhatTheWindowSends() {
        const auto [line, exit, sent] = Fetched<QString, CtlExit, QStringList>();
        const Run run = Btaskctl(line.split(u'|'));
        QCOMPARE(run.exit, exit);
        QCOMPARE(run.error.isEmpty(), exit == CtlExit::Done);
        QCOMPARE(Service().RequestLines(), QStringList(u"GET /profile/%d?PMCMethod=GetVdirList"_s) + sent);
        QVERIFY(run.out.isEmpty());
    }

    void failuresAreTold_data() {
        const Columns<QString, QString, CtlExit> row("fault", "line", "exit");
        row("list down", "refuse", "vdirs", CtlExit::Unreachable);
        row("list refused", "deny:500@GetVdirList", "vdir|login|Photos", CtlExit::Refused);
        row("list cut", "fin@GetVdirList", "vdirs", CtlExit::Refused);
        row("no card", "none", "card|Photos", CtlExit::Refused);
        row("dismounting refused", "deny:500@RemoveNode", "vdir|dismount|Photos", CtlExit::Refused);
        row("renaming refused", "deny:500@/resources", "vdir|rename|Photos|New", CtlExit::Refused);
        row("quota refused", "deny:500@/resources", "quota", CtlExit::Refused);
    }

    void failuresAreTold() {
        const auto [fault, line, exit] = Fetched<QString, QString, CtlExit>();
        QVERIFY(Service()->SetFault(fault.toStdString()));
        const Run run = Btaskctl(line.split(u'|'));
        QCOMPARE(run.exit, exit);
        QVERIFY(!run.error.isEmpty() && run.out.isEmpty());
    }

    void directoriesAsObjects() {
        const auto directory = [](const char* name, const char* status, const char* card) {
            return QJsonObject{{u"name"_s, QString::fromLatin1(name)},
                               {u"status"_s, QString::fromLatin1(status)},
                               {u"statusText"_s, u"pending"_s},
                               {u"spId"_s, QString::fromLatin1(Provider)},
                               {u"safeCardId"_s, QString::fromLatin1(card)}};
        };
        QCOMPARE(Json({u"vdirs"_s}),
                 (QJsonArray{directory("Photos", "1", "{C}"), directory("Plans", "1", "{C}"),
                             directory("A&B", "7", "{C&D}")}));
        Service()->SetAnswer("/mysafe/",
                             devservice::Answer{200, "<SafeCard><F FieldId='{F}' FieldName='Key' "
                                                     "Encrypted='True' FieldData='b3Blbg=='/></SafeCard>"});
        const QJsonObject field{{u"fieldName"_s, u"Key"_s}, {u"value"_s, u"******"_s}};
        QCOMPARE(Json({u"card"_s, u"photos"_s}), QJsonArray{field});
        Service()->SetAnswer(
            "/resources/home/quota",
            devservice::Answer{207, "<used-bytes>3000000000</x><allocated-bytes>2000000000</x>"});
        const QJsonObject quota{{u"used"_s, 3e9}, {u"allocated"_s, 2e9}, {u"available"_s, -1e9}};
        QCOMPARE(Json({u"quota"_s}), QJsonArray{quota});
    }

    void loginsEndWithTheirOutcome_data() {
        const Columns<QString, QString, CtlExit, QByteArray> row("login", "fault", "exit", "error");
        row("in", "in", "none", CtlExit::Done, "");
        row("refused", "refused:No such account", "none", CtlExit::Refused, "No such account\n");
        row("no plug-in", "no-plugin", "none", CtlExit::Refused, "Specified plugin can not be located!\n");
        row("not taken", "in", "deny:503@ForceRelogin", CtlExit::Refused,
            "The service refused: it answered with status 503.\n");
        row("stopped", "never", "none", CtlExit::Unreachable,
            "Stopped before the login ended. The service goes on with it.\n");
    }

    void loginsEndWithTheirOutcome() {
        const auto [login, fault, exit, error] = Fetched<QString, QString, CtlExit, QByteArray>();
        QVERIFY(Service()->SetLogin(login.toStdString()) && Service()->SetFault(fault.toStdString()));
        std::stop_source stop;
        auto run = std::async(std::launch::async, [&] {
            return Btaskctl({u"vdir"_s, u"login"_s, u"Photos"_s}, stop.get_token());
        });
        if (login == "never"_L1) {
            QTRY_VERIFY(!Service().RequestLines().filter(u"GetVDirStatus"_s).isEmpty());
            stop.request_stop();
        }
        const Run ended = run.get();
        QCOMPARE(ended.exit, exit);
        QCOMPARE(ended.error, error);
        QVERIFY(ended.out.isEmpty());
    }

private:
    ServiceFixture& Service() { return *m_service; }

    std::unique_ptr<ServiceFixture> m_service;
};

BTASK_TEST(DirectoryCommandsTest);
#include "DirectoryCommandsTest.moc"
