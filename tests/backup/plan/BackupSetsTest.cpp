#include "plan/BackupSets.h"

#include "plan/RestoreDraft.h"
#include "plan/RestoreEnd.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

std::vector<Snapshot> Named(const QString& names) {
    std::vector<Snapshot> snapshots;
    for (const QString& name : names.split(u' ', Qt::SkipEmptyParts))
        snapshots.push_back(*SnapshotOf(name));
    return snapshots;
}

QString NamesOf(const std::vector<Snapshot>& snapshots) {
    QStringList names;
    for (const Snapshot& snapshot : snapshots)
        names += snapshot.name;
    return names.join(u' ');
}

/// A storage "V" with a set "ABC" in "/V/T", in which these folders stand.
struct Storage {
    explicit Storage(const QString& names) {
        service->SetVirtualDirectories({{"V", "{C}"}});
        for (const QString& name : names.split(u' ', Qt::SkipEmptyParts))
            QDir().mkpath(folder + u'/' + name);
    }
    void WriteInfo(const QByteArray& info) {
        QFile file(folder + "/backupset.info"_L1);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(info);
    }

    ServiceFixture service;
    BackupSetPlace place{u"/V/T"_s, u"ABC"_s};
    QString folder = service.Home() + "/drive"_L1 + place.Folder();
};

const QString SetFolder = u"/resources/V/T/091306a3-3cb9-4778-b990-6efd84ed4bb5/ABC"_s;

} // namespace

class BackupSetsTest : public QObject {
    Q_OBJECT

private slots:
    void knowsTheSetOfATask_data() {
        const Columns<QString, QString, QString, QString> row("id", "type", "description", "path");
        const QString container = u"/091306a3-3cb9-4778-b990-6efd84ed4bb5/"_s;
        row("{ABC}", "Snapshotbackup", "D:\\Work\t/V/T\n/V/U\t*", u"/V/T"_s + container + "ABC/n"_L1);
        row("{A}B}", "AdvBackup", "Writer\t/V\t*", u"/V"_s + container + "A}B/n"_L1);
        row("{}", "AdvBackup", "Writer\t/V\t*", {});
        row("{1}", "Snapshotbackup", "D:\\Work", {});
        row("{2}", "Snapshotbackup", "D:\\Work\tV/T", {});
        row("{a/b}", "Snapshotbackup", "D:\\Work\t/V", {});
        row("{3}", "ccbackup", "/V/a\t/V/T", {});
    }
    void knowsTheSetOfATask() {
        const auto [id, type, description, path] = Fetched<QString, QString, QString, QString>();
        QCOMPARE(SetPlaceOf(id, type, description).SnapshotPath(u"n"_s), path);
        QCOMPARE(SetPlaceOf(id, type, description).SnapshotPath({}), QString());
        QCOMPARE(SetPlaceOf(id, type, description).SnapshotPath(u"n/m"_s), QString());
    }

    void readsSnapshotNames_data() {
        const Columns<QString, QString> row("name", "text");
        row("2012-3-4-5-6-7", "Snapshot created at: 2012-03-04 05:06:07 (Full)");
        row("2012-3-4-5-6-7_1", "Snapshot created at: 2012-03-04 05:06:07 (Incremental)");
        row("2012-3-4-5-6-7 of then_", "Snapshot created at: 2012-03-04 05:06:07 (Incremental)");
        row("02012-13-99-25-61-61", "Snapshot created at: 2012-13-99 25:61:61 (Full)");
        for (const char* none :
             {"2012-3-4-5-6", "2012-3-4-5-6-", "2012-3-4-5-6_7", "-2012-3-4-5-6-7", "2012--3-4-5-6-7",
              " 2012-3-4-5-6-7", "_2012-3-4-5-6-7", "2012-3-4-5-6-99999999999", "backupset.info", ""})
            row(none, {});
    }
    void readsSnapshotNames() {
        const auto [name, text] = Fetched<QString, QString>();
        const auto snapshot = SnapshotOf(name);
        QCOMPARE(snapshot ? CreatedText(*snapshot) : QString(), text);
    }

    void knowsWhatIsLost_data() {
        const Columns<QString, QString, QString> row("deleted", "lost", "text");
        row("2025-11-3-1-0-0", "2025-11-4-1-0-0_1 2025-11-9-1-0-0_2",
            "2 later snapshots, 4 to 9 Nov, cannot be restored without it.");
        row("2025-11-4-1-0-0_1", "2025-11-9-1-0-0_2",
            "1 later snapshot, 9 Nov, cannot be restored without it.");
        row("2025-11-9-1-0-0_2", {}, {});
        row("2025-12-1-1-0-0 2025-11-4-1-0-0_1", "2025-11-9-1-0-0_2 2025-12-2-1-0-0_1 2026-1-2-1-0-0_2",
            "3 later snapshots, 9 Nov 2025 to 2 Jan 2026, cannot be restored without them.");
        row("2025-11-4-1-0-0_1 2025-11-9-1-0-0_2 2025-11-3-1-0-0", {}, {});
    }
    void knowsWhatIsLost() {
        const auto [deleted, lost, text] = Fetched<QString, QString, QString>();
        const auto all = Named(u"2025-11-3-1-0-0 2025-11-4-1-0-0_1 2025-11-9-1-0-0_2 2025-12-1-1-0-0 "
                               "2025-12-2-1-0-0_1 2026-1-2-1-0-0_2"_s);
        const auto found = LostWithout(Named(deleted), all);
        QCOMPARE(NamesOf(found), lost);
        QCOMPARE(LostText(found, deleted.contains(u' ')), text);
    }

    void looksForASetStepByStep_data() {
        const Columns<QString, QString, QString> row("fault", "steps", "failure");
        row({}, "Loading backup set list...", {});
        const QString all =
            u"Loading backup set list...|Loading backup set list (checking storage)...|Loading "
            "backup set list (checking backup set config)...|Loading backup set list..."_s;
        row("deny:404@", all, {});
        row("deny:503@", all, "The service does not list this folder (status 503).");
        row("fin@", all, "The service's answer broke off in the middle.");
        row("refuse", all, "The service does not answer.");
    }
    void looksForASetStepByStep() {
        const auto [fault, steps, failure] = Fetched<QString, QString, QString>();
        Storage storage(u"2025-3-10-1-0-0_1 2025-3-4-1-0-0 broken-2025 2025-3-4-1-0-0_0"_s);
        storage.WriteInfo("<BackupType>Folder</BackupType>");
        if (!fault.isEmpty())
            QVERIFY(
                storage.service->SetFault((fault.endsWith(u'@') ? fault + SetFolder : fault).toStdString()));
        QStringList told;
        const SetContent content =
            ReadSet(ServiceClient(), storage.place, {}, [&told](const QString& step) { told += step; });
        QCOMPARE(told.join(u'|'), steps);
        QCOMPARE(content.failure, failure);
        QCOMPARE(content.found, fault.isEmpty());
        QCOMPARE(NamesOf(content.snapshots),
                 fault.isEmpty() ? u"2025-3-4-1-0-0 2025-3-4-1-0-0_0 2025-3-10-1-0-0_1"_s : QString());
    }

    void readsTheTypeOfASet_data() {
        const Columns<QByteArray, int> row("info", "type");
        row("folder", "<x><BackupType>Folder</BackupType></x>", int(SetType::Folder));
        row("other", "<BackupType>folder</BackupType>", int(SetType::Application));
        row("binary", QByteArray("\0\xFF<BackupType>Folder</BackupType>", 33), int(SetType::Folder));
        const QByteArray long16(qsizetype(ServiceClient::MaxAnswer), 'x');
        row("of 64 MB", long16 + "<BackupType>Folder</BackupType>" + long16 + long16 + long16,
            int(SetType::Application));
        row("missing", {}, int(SetType::Unknown));
    }
    void readsTheTypeOfASet() {
        const auto [info, type] = Fetched<QByteArray, int>();
        Storage storage(u"2025-3-4-1-0-0"_s);
        if (!info.isEmpty())
            storage.WriteInfo(info);
        QCOMPARE(int(ReadSet(ServiceClient(), storage.place, {}).type), type);
    }

    void deletesNothingThatOthersHangOn_data() {
        const Columns<QString, QString, bool, bool> row("name", "newest", "answered", "deleted");
        row("2025-3-5-1-0-0_1", "2025-3-5-1-0-0_1", true, true);
        row("one that has gone", "2025-3-1-1-0-0", "2025-3-5-1-0-0_1", true, false);
        row("known to be lost", "2025-3-4-1-0-0", "2025-3-5-1-0-0_1", true, true);
        row("came meanwhile", "2025-3-4-1-0-0", "2025-3-4-1-0-0", false, false);
    }
    void deletesNothingThatOthersHangOn() {
        const auto [name, newest, answered, deleted] = Fetched<QString, QString, bool, bool>();
        Storage storage(u"2025-3-4-1-0-0 2025-3-5-1-0-0_1"_s);
        const ServiceAnswer answer =
            DeleteSnapshot(ServiceClient(), storage.place, *SnapshotOf(name), *SnapshotOf(newest));
        QCOMPARE(bool(answer), answered);
        QCOMPARE(storage.service.RequestLines().filter(u"DELETE"_s),
                 deleted ? QStringList(u"DELETE "_s + SetFolder + u'/' + name) : QStringList());
        QCOMPARE(QDir(storage.folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), deleted ? 1 : 2);
    }

    void findsTheSizeOfAListedFile() {
        Storage storage(u"2025-3-4-1-0-0/Work"_s);
        for (const auto& [name, size] : {std::pair(u"a.txt"_s, 3), {u"b & c.txt"_s, 70'000}}) {
            QFile file(storage.folder + "/2025-3-4-1-0-0/Work/"_L1 + name);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(size));
        }
        const QString folder = storage.place.SnapshotPath(u"2025-3-4-1-0-0"_s) + "/Work/"_L1;
        QCOMPARE(FindListedFile(ServiceClient(), folder + "b & c.txt"_L1)->size,
                 std::optional<qint64>(70'000));
        QCOMPARE(FindListedFile(ServiceClient(), folder + "a.txt"_L1)->size, std::optional<qint64>(3));
        QVERIFY(!FindListedFile(ServiceClient(), folder + "c.txt"_L1));
    }

    void makesTheRecordOfARestore_data() {
        const Columns<QString, RestoreDraft, QByteArray> row("case", "draft", "record");
        RestoreDraft draft{u"R"_s, u"/V/T/c/ABC/s"_s, {u"Work"_s, u"a, b/\u00e4"_s}};
        row("its own place", draft, "R\t/V/T/c/ABC/s\tWork\na, b/\xC3\xA4\t*\t0\t0\t*\t");
        draft.location = u"/left/over"_s;
        draft.policy = RestorePolicy::Skip;
        draft.exclusions = {u"Work/x"_s, u"Work/y"_s};
        row("excluding", draft, "R\t/V/T/c/ABC/s\tWork\na, b/\xC3\xA4\tWork/x\nWork/y\t3\t0\t/left/over\t");
        draft.elsewhere = true;
        draft.name = u"A\tB\nC"_s;
        row("elsewhere", draft,
            "A B C\t/V/T/c/ABC/s\tWork\na, b/\xC3\xA4\tWork/x\nWork/y\t3\t1\t/left/over\t");
    }
    void makesTheRecordOfARestore() {
        const auto [name, draft, record] = Fetched<QString, RestoreDraft, QByteArray>();
        QCOMPARE(RecordOf(FieldsOf(draft)), record);
        QCOMPARE(RestoreRefusal(draft), QString());
    }

    void refusesARestore_data() {
        const Columns<QString, QString, QString, bool, QString> row("name", "component", "location",
                                                                    "elsewhere", "why");
        row("R", {}, {}, false, "Please select at least one component to restore!");
        row("R", "a", {}, true, "You chose to restore to another location, but the location is empty.");
        row("R", "a", "some/where", true,
            "The location has to be a whole path, as in \"/home/me/restored\" or \"D:\\Restored\".");
        row("R", "a", "some/where", false, {});
        row("R", "a", "D:\\x", true, {});
        row("", "a", {}, false, "Task Name Can't Be Empty");
        row("R", "a\tb", {}, false, "\"a b\" holds a tab (U+0009), which cannot be carried to the service.");
    }
    void refusesARestore() {
        const auto [name, component, location, elsewhere, why] =
            Fetched<QString, QString, QString, bool, QString>();
        const RestoreDraft draft{
            name,      u"/V/s"_s, component.isEmpty() ? QStringList() : QStringList(component), {}, {},
            elsewhere, location};
        QCOMPARE(RestoreRefusal(draft), why);
    }

    void knowsWhereAFileGoes_data() {
        const Columns<QString, QString, QString> row("path", "location", "place");
        row("Work/a/b.txt", {}, "D:\\My\\Work\\a\\b.txt");
        row("photos/c.jpg", {}, "/home/me/photos/c.jpg");
        row("Other/c.jpg", {}, {});
        row("Other/c.jpg", "/r/", "/r/Other/c.jpg");
        row("Other/c.jpg", "E:\\", "E:\\Other\\c.jpg");
    }
    void knowsWhereAFileGoes() {
        const auto [path, location, place] = Fetched<QString, QString, QString>();
        const RestoreDraft draft{{}, {}, {path}, {}, {}, !location.isEmpty(), location};
        const QStringList sources{u"@"_s, u"D:\\My\\Work\\"_s, u"/home/me/Photos"_s};
        QCOMPARE(RestoredTo(draft, sources, path).value_or(QString()), place);
    }

    void tellsHowARestoreEnded_data() {
        const Columns<int, int, QString> row("processed", "failed", "text");
        row(4310, 12, "4,298 restored, 12 failed");
        row(3, 0, "3 restored");
        row(0, 0, "Nothing was restored (Completed successfully)");
    }
    void tellsHowARestoreEnded() {
        const auto [processed, failed, text] = Fetched<int, int, QString>();
        QCOMPARE(RestoredText({{}, {}, u"Completed successfully"_s, 5000, failed, processed}), text);
    }
};

BTASK_TEST(BackupSetsTest);
#include "BackupSetsTest.moc"
