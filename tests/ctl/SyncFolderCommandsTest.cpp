// Labels: threads
#include "Shell.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "support/UserHome.h"

#include <QDir>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr char Provider[] = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";

} // namespace

class SyncFolderCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_service = std::make_unique<ServiceFixture>();
        m_home = std::make_unique<UserHome>(m_service->Home());
        Service().SetVirtualDirectories({{"Team", "{C}", 3, Provider}, {"Archive", "{D}", 3, Provider}});
        Service().SetSetting("DropFolders", "Team\t/local/team\nno tab");
    }
    void cleanup() {
        m_home.reset();
        m_service.reset();
    }

    void commandsHaveTheirCodes_data() {
        const Columns<QString, QString, CtlExit, QString, QString> row("line", "fault", "exit", "last",
                                                                       "error");
        using enum CtlExit;
        row("sync add|archive|{home}/a", "", Done, "PUT /settings/LST_Archive", "");
        row("sync add|Archive|a", "", Usage, "", "no complete path");
        row("sync add|Nobody|{home}/a", "", Refused, "GET /profile/", "no virtual directory \"Nobody\"");
        row("sync add|team|{home}/a", "", Refused, "GET /settings/DropFolders", "Only one");
        row("sync add|Archive|{home}/settings/settings.txt/a", "", Refused, "GET /settings/DropFolders",
            "nothing was changed");
        row("sync add|Archive|{home}/a", "deny:500@LTN_", Refused, "PUT /settings/LST_Archive",
            "LTN_Archive");
        row("sync add|Archive|{home}/a", "refuse", Unreachable, "", "Unable to get");
        row("sync disable|TEAM", "", Done, "PUT /settings/LTS_Team", "");
        row("sync disable|Archive", "", Refused, "GET /settings/DropFolders", "no Cloud Sync Folder");
        row("sync disable|Team", "refuse", Unreachable, "", "did not tell");
        row("sync now|team", "", Done, "GET /schedule/dropfoldersync", "");
        row("sync now|Archive", "", Refused, "GET /settings/DropFolders", "no Cloud Sync Folder");
        row("sync now|Team", "deny:500@dropfoldersync", Refused, "GET /schedule/dropfoldersync", "500");
        row("changes|Archive", "", Refused, "GET /settings/DropFolders", "no Cloud Sync Folder");
        row("versions|Team|x.txt", "", Usage, "", "begins with");
        row("versions|Team|/x.txt", "", Refused, "GET /DavCache/getfilever", "404");
        row("revert|Team|/x.txt|13", "", Refused, "GET /DavCache/getfilever", "404");
        row("syncfolders", "status:500@DropFolders", Refused, "GET /settings/DropFolders", "500");
        row("syncfolders", "refuse", Unreachable, "", "not reachable");
    }

    void commandsHaveTheirCodes() {
        const auto [line, fault, exit, last, error] = Fetched<QString, QString, CtlExit, QString, QString>();
        if (!fault.isEmpty())
            QVERIFY(Service().SetFault(fault.toStdString()));
        const Run run = Btaskctl(Words(line));
        QCOMPARE(run.exit, exit);
        QVERIFY2(error.isEmpty() ? run.error.isEmpty() : run.error.contains(error.toUtf8()),
                 run.error.constData());
        const QStringList lines = m_service->RequestLines();
        QVERIFY2(last.isEmpty() ? lines.isEmpty() : lines.value(lines.size() - 1).startsWith(last),
                 qPrintable(lines.join(u'\n')));
    }

    void foldersAreListed() {
        Service().SetSetting("DropFolders", "Team\t/local/team\nGone\t/gone\nteam\t/moved");
        Service().SetAnswer("/schedule/getsynctask", devservice::Answer{200, "{none}"});
        QJsonArray rows = Json({u"syncfolders"_s});
        QCOMPARE(rows.size(), 2);
        QCOMPARE(rows[0]["path"_L1].toString(), u"/moved"_s);
        QVERIFY(rows[0]["state"_L1].isNull() && rows[0]["taskId"_L1].toString() == "{none}"_L1);
        Service().SetAnswer("/schedule/getsynctask", {});
        Service().SetSetting("DropFolders", "Team\t/local/team");
        rows = Json({u"syncfolders"_s});
        QCOMPARE(rows[0]["state"_L1].toInt(-1), 0);
        QVERIFY(rows[0]["status"_L1].toString().startsWith("Sync starts"_L1));
        QCOMPARE(rows[0]["nextRun"_L1].toString(), u"2025-03-04 09:01:00"_s);
    }

    void versionsAreListedAndBroughtBack() {
        QCOMPARE(Btaskctl(Words(u"sync now|Team"_s)).exit, CtlExit::Done);
        Service().Advance(60min);
        const QJsonArray changes = Json({u"changes"_s, u"team"_s});
        QVERIFY(changes.size() > 20);
        QCOMPARE(changes.last()["operation"_L1].toString(), u"Added"_s);
        QCOMPARE(changes.last()["file"_L1].toString(), u"/Team/plan.odt"_s);
        const QJsonArray versions = Json(Words(u"versions|Team|/plan.odt"_s));
        QVERIFY(versions.size() > 2);
        QCOMPARE(versions[0]["version"_L1].toInt(), 1);
        QCOMPARE(versions.last()["op"_L1].toString(), u"Add"_s);
        QCOMPARE(versions.last()["base"_L1].toString(), u"Full"_s);
        const auto revert = [&](const QString& key) {
            Service().ForgetRequests();
            return Btaskctl({u"revert"_s, u"Team"_s, u"/plan.odt"_s, key}).exit;
        };
        for (const QString& key : {versions[0]["key"_L1].toString(), u"1"_s}) {
            QCOMPARE(revert(key), CtlExit::Refused);
            QVERIFY(!m_service->RequestLines().contains(u"GET /DavCache/droprevert"_s));
        }
        QCOMPARE(revert(versions.last()["key"_L1].toString()), CtlExit::Done);
        QCOMPARE(Json(Words(u"versions|Team|/plan.odt"_s)).size(), versions.size() + 1);
    }

private:
    devservice::DevService& Service() { return m_service->Service(); }
    /// The command's words and its operands.
    QStringList Words(QString line) const {
        const QStringList parts = line.replace("{home}"_L1, m_service->Home()).split(u'|');
        return parts.first().split(u' ') + parts.mid(1);
    }

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<UserHome> m_home;
};

BTASK_TEST(SyncFolderCommandsTest);
#include "SyncFolderCommandsTest.moc"
