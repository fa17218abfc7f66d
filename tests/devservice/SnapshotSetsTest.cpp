#include "RawHttp.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;
using namespace devservice;
using namespace std::chrono_literals;

namespace {

constexpr char Container[] = "/V/Kept/091306a3-3cb9-4778-b990-6efd84ed4bb5";

bool Write(const QString& path, const QByteArray& content, int ageInDays = 100) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() &&
           file.setFileTime(QDateTime(QDate(2025, 3, 4), QTime(9, 0)).addDays(-ageInDays),
                            QFileDevice::FileModificationTime);
}

QByteArray Read(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

/// A service with a storage, and a backup of a folder "Work" in its home that has run.
struct Backed {
    Backed() {
        service->SetVirtualDirectories({{"V", "{C}"}});
        Write(work + "/a.txt"_L1, "one");
        Write(work + "/deep/b.txt"_L1, "two");
        Task task = MakeTask("{ABC}", "Work", "Snapshotbackup");
        task.description = work.toStdString() + "\t/V/Kept\t*";
        service->PutTask(task);
        Run();
    }
    void Run() {
        const auto ran = service->FindTask("{ABC}")->runCount;
        Send(service->Port(), Request("GET", "/schedule/startnow?{ABC}"));
        while (service->FindTask("{ABC}")->state == TaskState::Running ||
               service->FindTask("{ABC}")->runCount == ran)
            service->Advance(1min);
    }
    QDir Set() const { return QDir(service.Home() + "/drive"_L1 + QLatin1String(Container) + "/ABC"_L1); }
    QStringList Snapshots() const { return Set().entryList(QDir::Dirs | QDir::NoDotAndDotDot); }
    int Restore(const QByteArray& record) {
        return Send(service->Port(), Request("GET", "/schedule/restoreapp", record + '\0')).Status();
    }
    /// The record's seven fields with a tab behind each.
    static QByteArray Record(const QList<QByteArray>& fields) { return fields.join('\t') + '\t'; }

    ServiceFixture service;
    QString work = service.Home() + "/Work"_L1;
};

} // namespace

class SnapshotSetsTest : public QObject {
    Q_OBJECT

private slots:
    void keepsWhatHasChangedBetweenFullOnes() {
        Backed backed;
        QCOMPARE(Read(backed.Set().filePath(u"backupset.info"_s)),
                 QByteArray("<BackupSet><BackupType>Folder</BackupType></BackupSet>"));
        Write(backed.work + "/a.txt"_L1, "changed", 0);
        for (int run = 0; run < 4; ++run)
            backed.Run();
        QStringList kinds;
        QStringList changed;
        for (const QString& name : backed.Snapshots()) {
            kinds += name.contains(u'_') ? name.section(u'_', 1) : u"full"_s;
            changed += QString::number(QFile::exists(backed.Set().filePath(name + "/Work/deep/b.txt"_L1)));
        }
        kinds.sort();
        changed.sort();
        QCOMPARE(kinds, (QStringList{u"1"_s, u"2"_s, u"3"_s, u"full"_s, u"full"_s}));
        QCOMPARE(changed, (QStringList{u"0"_s, u"0"_s, u"0"_s, u"1"_s, u"1"_s}));
        backed.service->SetVirtualDirectories({});
        backed.Run();
        QVERIFY(!backed.Set().exists());
    }

    void takesARestoreToTheOctet_data() {
        const Columns<QByteArray, int> row("record", "status");
        const QList<QByteArray> good{"R", "SNAPSHOT", "Work", "*", "0", "0", "*"};
        const auto with = [good](int field, const QByteArray& value) {
            QList<QByteArray> fields = good;
            fields[field] = value;
            return Backed::Record(fields);
        };
        row("whole", Backed::Record(good), 200);
        row("elsewhere", with(5, "1").replace("*\t", "/tmp/x\t"), 200);
        row("without its last tab", Backed::Record(good).chopped(1), 400);
        row("more fields", Backed::Record(good) + "\t", 400);
        row("no name", with(0, {}), 400);
        row("no snapshot there", with(1, Container + QByteArray("/ABC/2001-1-1-1-1-1")), 400);
        row("no snapshot", with(1, "/V/Kept"), 400);
        row("no components", with(2, {}), 400);
        row("an empty line", with(2, "Work\n"), 400);
        row("no exclusions", with(3, {}), 400);
        row("policy", with(4, "4"), 400);
        row("flag", with(5, "2"), 400);
        row("nowhere", with(5, "1"), 400);
        row("no location", with(6, {}), 400);
    }
    void takesARestoreToTheOctet() {
        auto [record, status] = Fetched<QByteArray, int>();
        Backed backed;
        record.replace("SNAPSHOT", Container + QByteArray("/ABC/") + backed.Snapshots().front().toUtf8());
        QCOMPARE(backed.Restore(record), status);
        QCOMPARE(backed.service->Tasks().size(), std::size_t(status == 200 ? 2 : 1));
    }

    void restoresFilesByThePolicy_data() {
        // What stands there is of today, or older than what is restored.
        const Columns<int, bool, QByteArray, QByteArray> row("policy", "newer", "there", "beside");
        row("overwrite", 0, true, "one", "(none)");
        row("keep newer", 1, true, "mine", "(none)");
        row("replace older", 1, false, "one", "(none)");
        row("rename", 2, true, "mine", "one");
        row("skip", 3, false, "mine", "(none)");
    }
    void restoresFilesByThePolicy() {
        const auto [policy, newer, there, beside] = Fetched<int, bool, QByteArray, QByteArray>();
        Backed backed;
        const QString place = backed.service.Home() + "/elsewhere"_L1;
        Write(place + "/Work/a.txt"_L1, "mine", newer ? 0 : 200);
        const QByteArray snapshot = Container + QByteArray("/ABC/") + backed.Snapshots().front().toUtf8();
        QCOMPARE(backed.Restore(Backed::Record({"R", snapshot, "Work\nWork/none", "Work/deep/b.txt",
                                                QByteArray::number(policy), "1", place.toUtf8()})),
                 200);
        backed.service->Advance(10min);
        QCOMPARE(Read(place + "/Work/a.txt"_L1), there);
        QCOMPARE(Read(place + "/Work/a (1).txt"_L1), beside);
        QVERIFY(!QFile::exists(place + "/Work/deep/b.txt"_L1));
        for (const Task& task : backed.service->Tasks())
            if (task.type == "RestoreApp")
                QCOMPARE(task.state, TaskState::Failed); // for what is not in the snapshot
    }

    void restoresToItsOwnPlaceWhatCameLast() {
        Backed backed;
        Write(backed.work + "/a.txt"_L1, "changed", 0);
        backed.Run();
        const QByteArray last = backed.Snapshots().filter(u"_1"_s).value(0).toUtf8();
        QDir(backed.work).removeRecursively();
        QCOMPARE(backed.Restore(Backed::Record(
                     {"R", Container + QByteArray("/ABC/") + last, "Work", "*", "3", "0", "*"})),
                 200);
        backed.service->Advance(10min);
        QCOMPARE(Read(backed.work + "/a.txt"_L1), "changed");
        QCOMPARE(Read(backed.work + "/deep/b.txt"_L1), "two");
    }
};

BTASK_TEST(SnapshotSetsTest);
#include "SnapshotSetsTest.moc"
