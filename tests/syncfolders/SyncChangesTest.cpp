// Labels: threads
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "support/UserHome.h"
#include "syncplan/LocalFolder.h"

#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char Provider[] = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";

QString Decoded(const QString& line) {
    return QString(line).replace("%7B"_L1, "{"_L1).replace("%7D"_L1, "}"_L1);
}

} // namespace

/// Adding and disabling sync folders, as window and shell do it.
class SyncChangesTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_service = std::make_unique<ServiceFixture>();
        m_home = std::make_unique<UserHome>(m_service->Home());
        Service().SetVirtualDirectories({{"Team", "{C}", 3, Provider}});
    }
    void cleanup() {
        m_home.reset();
        m_service.reset();
    }

    void addingGoesInOrder() {
        Service().SetSetting("DropFolders", "Other\t/other\nno tab\n");
        const SyncFolderChange change = EnableSyncFolder(ServiceClient(), {u"Team"_s, Local()});
        QCOMPARE(change.Report(), QString());
        QCOMPARE(Stored(), u"Other\t/other\nno tab\nTeam\t"_s + Local());
        QVERIFY(QDir(Local()).exists());
        const QStringList lines = m_service->RequestLines();
        QCOMPARE(lines.size(), 6);
        QCOMPARE(lines[0], u"GET /settings/DropFolders"_s);
        QVERIFY(lines[1].startsWith("PUT /settings/DropFolders?ValueType=2&Value=Other"_L1));
        QCOMPARE(lines[2], u"GET /settings/DropFolders"_s);
        QCOMPARE(lines[3], u"PUT /settings/LTN_Team?ValueType=1&Value=0"_s);
        QCOMPARE(Decoded(lines[4]), u"PUT /settings/LTN_Team_?ValueType=2&Value={delgroup}"_s);
        QCOMPARE(lines[5], u"PUT /settings/LST_Team?ValueType=2&Value="_s);
        QCOMPARE(Shortcuts(), ShortcutCount);
    }

    void addingThatStopsSaysWhatStands_data() {
        // "list" or "folder" stands; a part of the report.
        const Columns<QString, QString, bool, bool, QString> row("fault", "path", "list", "folder", "report");
        row("deny:500@DropFolders", "new", false, false, "did not tell what it holds now");
        row("deny:500@DropFolders?", "new", false, true, "did not take the list");
        row("status:500@DropFolders?", "new", true, true, "");
        row("deny:500@LTN_Team?", "new", true, true, "LTN_Team.");
        row("deny:500@LTN_Team_", "new", true, true, "LTN_Team_.");
        row("deny:500@LST_Team", "new", true, true, "LST_Team.");
        row("deny:500@_Team", "new", true, true, "LTN_Team, LTN_Team_, LST_Team");
        row("refuse", "new", false, false, "did not tell");
        row("", "file/below", false, false, "could not be made, so nothing was changed");
    }

    void addingThatStopsSaysWhatStands() {
        const auto [fault, name, list, folder, report] = Fetched<QString, QString, bool, bool, QString>();
        QFile file(m_service->Home() + "/file"_L1);
        QVERIFY(file.open(QIODevice::WriteOnly));
        Service().SetSetting("DropFolders", "Other\t/other");
        if (!fault.isEmpty())
            QVERIFY(Service().SetFault(fault.toStdString()));
        const QString path = m_service->Home() + u'/' + name;
        const SyncFolderChange change = EnableSyncFolder(ServiceClient(), {u"Team"_s, path});
        QVERIFY2(change.Report().contains(report), qPrintable(change.Report()));
        QCOMPARE(Stored(), list ? u"Other\t/other\nTeam\t"_s + path : u"Other\t/other"_s);
        QCOMPARE(QDir(path).exists(), folder);
        QVERIFY(folder == change.Report().contains(path) || change.IsWhole() || !folder);
    }

    void whatCannotBeAddedIsRefusedBeforeTheFolderIsMade_data() {
        const Columns<QByteArray, QString> row("list", "report");
        row("team\t/elsewhere", "Only one Cloud Sync Folder is allowed");
        row("Other\t/R&D", "Its entry \"Other /R&D\"");
        row(QByteArray("Long\t/") + QByteArray(70'000, 'x'), "too long");
    }

    void whatCannotBeAddedIsRefusedBeforeTheFolderIsMade() {
        const auto [list, report] = Fetched<QByteArray, QString>();
        Service().SetSetting("DropFolders", list.toStdString());
        const SyncFolderChange change = EnableSyncFolder(ServiceClient(), {u"Team"_s, Local()});
        QVERIFY2(change.Report().contains(report), qPrintable(change.Report()));
        QCOMPARE(m_service->RequestLines(), QStringList{u"GET /settings/DropFolders"_s});
        QVERIFY(!QDir(Local()).exists());
    }

    void shortcutsThatCannotBePlacedAreTold() {
        QFile desktop(m_service->Home() + "/Desktop"_L1); // where the folder should be
        QVERIFY(desktop.open(QIODevice::WriteOnly));
        const SyncFolderChange change = EnableSyncFolder(ServiceClient(), {u"Team"_s, Local()});
        QVERIFY(change.list.stored);
        QCOMPARE(change.IsWhole(), ShortcutCount == 0);
        if (ShortcutCount > 0)
            QVERIFY2(change.Report().contains(desktop.fileName()), qPrintable(change.Report()));
    }

    void disablingGoesInOrder() {
        QVERIFY(EnableSyncFolder(ServiceClient(), {u"Team"_s, Local()}).IsWhole());
        Service().SetSetting("DropFolders",
                             "Other\t/other\nTeam\t" + Local().toStdString() + "\nTEAM\t/x\nteam");
        const QString id = SettingText(RequestSyncTask(ServiceClient(), u"Team"_s).body);
        QVERIFY(Service().FindTask(id.toStdString()));
        QVERIFY(QDir(Local()).removeRecursively()); // it works without the folder
        Service().ForgetRequests();
        QCOMPARE(DisableSyncFolder(ServiceClient(), u"team"_s).Report(), QString());
        QCOMPARE(Stored(), u"Other\t/other\nteam"_s);
        const QStringList lines = m_service->RequestLines();
        QCOMPARE(lines.size(), 7);
        QVERIFY(lines[1].startsWith("PUT /settings/DropFolders?"_L1));
        QCOMPARE(lines[3], u"GET /schedule/getsynctask"_s);
        QCOMPARE(Decoded(lines[4]), u"GET /schedule/deletetask?"_s + id);
        QCOMPARE(lines[5], u"PUT /settings/LTN_Team?ValueType=1&Value=0"_s);
        QCOMPARE(lines[6], u"PUT /settings/LTS_Team?ValueType=2&Value="_s);
        QVERIFY(!Service().FindTask(id.toStdString()));
        QCOMPARE(Shortcuts(), 0);
    }

    void disablingThatStopsSaysWhatStands_data() {
        const Columns<QString, bool, QString> row("fault", "listed", "report");
        row("deny:500@DropFolders?", true, "did not take the list");
        row("deny:500@getsynctask", false, "did not tell the folder's sync task");
        row("deny:500@deletetask", false, "sync task {7} was not deleted");
        row("deny:500@LTS_", false, "LTS_Team");
        row("deny:404@getsynctask", false, "");
    }

    void disablingThatStopsSaysWhatStands() {
        const auto [fault, listed, report] = Fetched<QString, bool, QString>();
        Service().SetSetting("DropFolders", "Team\t/x");
        Service().PutTask(devservice::MakeTask("{7}", "Any"));
        Service().SetAnswer("/schedule/getsynctask", devservice::Answer{200, "{7}"});
        QVERIFY(Service().SetFault(fault.toStdString()));
        const SyncFolderChange change = DisableSyncFolder(ServiceClient(), u"Team"_s);
        QCOMPARE(Stored(), listed ? u"Team\t/x"_s : QString());
        QCOMPARE(change.IsWhole(), report.isEmpty());
        QVERIFY2(change.Report().contains(report), qPrintable(change.Report()));
        QVERIFY(listed || report.isEmpty() || change.Report().contains(u"no longer in the list"_s));
    }

private:
    devservice::DevService& Service() { return m_service->Service(); }
    QString Local() const { return m_service->Home() + "/new/Cloud Sync Folder - Team"_L1; }
    QString Stored() { return QString::fromStdString(Service().Setting("DropFolders").value_or("")); }

    /// Those of the folder in the three places.
    int Shortcuts() const {
        int count = 0;
        for (const QLatin1String place : {"/Desktop"_L1, "/.local/share/applications"_L1, "/Documents"_L1})
            count +=
                QFile::exists(m_service->Home() + place + "/Cloud Sync Folder - Team.desktop"_L1) ? 1 : 0;
        return count;
    }

    // Windows tells by itself where the user's folders are.
    static constexpr int ShortcutCount = std::filesystem::path::preferred_separator == '/' ? 3 : 0;

    std::unique_ptr<ServiceFixture> m_service;
    std::unique_ptr<UserHome> m_home;
};

BTASK_TEST(SyncChangesTest);
#include "SyncChangesTest.moc"
