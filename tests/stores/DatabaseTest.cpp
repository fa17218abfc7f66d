// Labels: threads
#include "ReadingWays.h"
#include "devservice/Sqlite.h"
#include "stores/SubTaskStore.h"
#include "support/TestMain.h"

#include <future>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using devservice::Connection;
using devservice::DatabaseFault;
namespace fs = std::filesystem;

namespace {

void PutManyTasks(ServiceFixture& service, int count) {
    service->Execute(service->DatabaseFile(File::Scheduler),
                     "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<" +
                         std::to_string(count) +
                         ") INSERT INTO Scheduler SELECT i,'','backup','Task '||i,printf('%.500c','x'),NULL,"
                         "zeroblob(308),0,NULL,i,0 FROM n");
}

devservice::Options With(devservice::JournalMode mode) {
    devservice::Options options;
    options.journal = mode;
    return options;
}

void AddJournalModes() {
    const Columns<devservice::JournalMode> row("journal");
    row("rollback", devservice::JournalMode::Rollback);
    row("WAL", devservice::JournalMode::Wal);
}

/// Leaves the file as a writer does that is killed while it writes.
void KillAWriterOf(const fs::path& file) {
    const fs::path journal = file.string() + "-journal";
    const fs::path folder = file.parent_path() / "killed";
    fs::create_directory(folder);
    {
        Connection writer(file);
        writer.Execute("PRAGMA synchronous=OFF; PRAGMA cache_size=1; BEGIN; UPDATE Scheduler SET "
                       "TaskName='half', Description=printf('%.900c','y')");
        fs::copy_file(file, folder / "database");
        fs::copy_file(journal, folder / "journal");
    }
    for (const auto& [copy, place] :
         {std::pair(folder / "database", file), std::pair(folder / "journal", journal)}) {
        fs::remove(place);
        fs::copy_file(copy, place);
    }
}

void Repair(const fs::path& file) {
    Connection(file, 5000).Execute("SELECT count(*) FROM Scheduler");
}

} // namespace

/// What holds for every store: how a read ends when the database is not as it should be, and what it leaves.
class DatabaseTest : public QObject {
    Q_OBJECT

private slots:
    void tellsFaultsAndRecovers_data() {
        const Columns<const ReadingWay*, DatabaseFault, ReadOutcome> row("way", "fault", "outcome");
        const std::tuple<const char*, DatabaseFault, ReadOutcome> faults[] = {
            {"missing", DatabaseFault::Missing, ReadOutcome::Missing},
            {"locked", DatabaseFault::Locked, ReadOutcome::Busy},
            {"truncated", DatabaseFault::Truncated, ReadOutcome::Damaged},
            {"no database", DatabaseFault::Garbage, ReadOutcome::Damaged},
            {"other tables", DatabaseFault::OtherSchema, ReadOutcome::OtherSchema},
        };
        for (const ReadingWay& way : Ways)
            for (const auto& [name, fault, outcome] : faults)
                QTest::addRow("%s, %s", way.name, name) << &way << fault << outcome;
    }

    void tellsFaultsAndRecovers() {
        const auto [way, fault, outcome] = Fetched<const ReadingWay*, DatabaseFault, ReadOutcome>();
        ServiceFixture service;
        Fill(service);
        const fs::path file =
            way->database ? service->DatabaseFile(*way->database) : service->SubTaskFile(TaskId);
        const auto read = [&way = way] { return way->readWith({}, Impatient); };
        const Reading before = read();
        QVERIFY2(before.read, qPrintable(before.read.detail));
        QVERIFY(!before.rows.isEmpty());

        service->SetFault(devservice::DatabaseFaultSwitch{fault, file, {}});
        const auto octets = Octets(file);
        for (int attempt = 0; attempt < 2; ++attempt) {
            const Reading damaged = read();
            QCOMPARE(damaged.read.outcome, outcome);
            QVERIFY(!damaged.read.Sentence().isEmpty());
            QCOMPARE(damaged.rows, QStringList());
        }
        QVERIFY(Octets(file) == octets);
        const bool prepares = outcome == ReadOutcome::OtherSchema;
        const bool isTraced = !prepares || way->prepareIsTraced;
        QCOMPARE(Traces(service.Home()).filter(way->traceOfPrepare).size(), prepares && isTraced ? 1 : 0);
        QCOMPARE(Traces(service.Home()).filter(u"[Database]"_s).size(), prepares ? 0 : 1);
        const bool isFault = outcome != ReadOutcome::Missing && outcome != ReadOutcome::Busy;
        QCOMPARE(Traces(service.Home(), "ERROR").size(), isTraced && isFault ? 1 : 0);

        service->ClearFaults();
        const Reading after = read();
        QVERIFY(after.read);
        QCOMPARE(after.rows, before.rows);
        QCOMPARE(Traces(service.Home()).filter(u"readable again"_s).size(), isTraced ? 1 : 0);
    }

    void damageFurtherInIsTracedOnceToo() {
        ServiceFixture service;
        PutManyTasks(service, 2000);
        service->Stop();
        const fs::path file = service->DatabaseFile(File::Scheduler);
        fs::copy_file(file, file.string() + ".good");
        QFile octets(QString::fromStdString(file.string()));
        QVERIFY(octets.open(QIODevice::ReadWrite));
        const qint64 half = octets.size() / 2;
        octets.seek(half);
        octets.write(QByteArray(octets.size() - half, 'x'));
        octets.close();
        for (int attempt = 0; attempt < 3; ++attempt)
            QCOMPARE(TaskNames::Read().read.outcome, ReadOutcome::Damaged);
        QCOMPARE(Traces(service.Home(), "ERROR").size(), 1);
        fs::remove(file);
        fs::rename(file.string() + ".good", file);
        QVERIFY(TaskNames::Read().read);
        QCOMPARE(Traces(service.Home()).filter(u"readable again"_s).size(), 1);
    }

    void whatIsNoDatabaseIsTold_data() {
        // sql: run on an empty file; null: a folder stands in its place
        const Columns<QByteArray, ReadOutcome> row("sql", "outcome");
        row("empty file", "", ReadOutcome::OtherSchema);
        row("folder", {}, ReadOutcome::Damaged);
        row("too few columns", "CREATE TABLE Scheduler(TaskId, StartTime)", ReadOutcome::OtherSchema);
        row("no column to order by", "CREATE TABLE Scheduler(TaskId,b,c,d,e,f,g,h,i,j,k)",
            ReadOutcome::OtherSchema);
    }

    void whatIsNoDatabaseIsTold() {
        const auto [sql, outcome] = Fetched<QByteArray, ReadOutcome>();
        ServiceFixture service;
        service->Stop();
        const fs::path file = service->DatabaseFile(File::Scheduler);
        fs::remove(file);
        if (sql.isNull())
            fs::create_directory(file);
        else
            Connection(file).Execute(sql.toStdString());
        if (sql.isEmpty() && !sql.isNull())
            fs::resize_file(file, 0);
        const TaskNames tasks = TaskNames::Read();
        QCOMPARE(tasks.read.outcome, outcome);
        QCOMPARE(tasks.names, QStringList());
    }

    void waitsForALockThatIsReleased() {
        ServiceFixture service;
        Fill(service);
        service->SetFault(DatabaseFault::Locked, File::Scheduler);
        auto read = std::async(std::launch::async, [] { return TaskNames::Read({}, Patient); });
        QVERIFY(read.wait_for(20ms) == std::future_status::timeout);
        service->ClearFaults();
        const TaskNames tasks = read.get();
        QVERIFY2(tasks.read, qPrintable(tasks.read.detail));
        QCOMPARE(tasks.names.size(), 2);
    }

    void aStopEndsTheWaitForALock() {
        ServiceFixture service;
        Fill(service);
        service->SetFault(DatabaseFault::Locked, File::Scheduler);
        std::stop_source stop;
        auto read = std::async(std::launch::async, [token = stop.get_token()] {
            return TaskNames::Read(token, {30, 10min});
        });
        QVERIFY(read.wait_for(20ms) == std::future_status::timeout);
        stop.request_stop();
        QVERIFY(read.wait_for(1s) == std::future_status::ready);
        QCOMPARE(read.get().read.outcome, ReadOutcome::Stopped);
    }

    void aStopEndsAWalk() {
        constexpr int Rows = 20'000;
        ServiceFixture service;
        PutManyTasks(service, Rows);
        std::stop_source stop;
        int seen = 0;
        const auto walk = [&] {
            return EnumAllTasks(
                [&](const TaskRecord&) {
                    ++seen;
                    stop.request_stop();
                    return true;
                },
                stop.get_token());
        };
        QCOMPARE(walk().outcome, ReadOutcome::Stopped);
        QVERIFY(seen > 0 && seen < Rows / 10);
        for (const ReadingWay& way : Ways)
            QCOMPARE(way.readWith(stop.get_token(), Impatient).read.outcome, ReadOutcome::Stopped);
    }

    void readsBesideAnOpenTransaction_data() { AddJournalModes(); }

    void readsBesideAnOpenTransaction() {
        QFETCH(const devservice::JournalMode, journal);
        ServiceFixture service(With(journal));
        Fill(service);
        const fs::path file = service->DatabaseFile(File::Scheduler);
        Connection writer(file);
        writer.Execute("BEGIN IMMEDIATE; UPDATE Scheduler SET TaskName='new'");
        auto octets = Octets(file);
        const QStringList old = TaskNames::Read().names;
        QCOMPARE(QSet<QString>(old.begin(), old.end()), (QSet<QString>{u"one"_s, u"two"_s}));
        QVERIFY(Octets(file) == octets);
        writer.Execute("COMMIT");
        octets = Octets(file);
        QCOMPARE(TaskNames::Read().names, (QStringList{u"new"_s, u"new"_s}));
        QVERIFY(Octets(file) == octets);
    }

    void leavesADatabaseWithoutItsServiceAlone_data() { AddJournalModes(); }

    void leavesADatabaseWithoutItsServiceAlone() {
        QFETCH(const devservice::JournalMode, journal);
        ServiceFixture service(With(journal));
        Fill(service);
        service->Stop();
        for (const ReadingWay& way : Ways) {
            const fs::path file =
                way.database ? service->DatabaseFile(*way.database) : service->SubTaskFile(TaskId);
            const QString name = QString::fromStdU16String(file.filename().u16string());
            const QByteArray octets = Octets(file)[name];
            const Reading reading = way.readWith({}, Impatient);
            QVERIFY2(reading.read, qPrintable(reading.read.detail));
            QVERIFY(!reading.rows.isEmpty());
            QVERIFY(Octets(file)[name] == octets);
        }
    }

    void aJournalOfAKilledWriterIsLeftToTheService() {
        ServiceFixture service;
        PutManyTasks(service, 200);
        const QStringList good = TaskNames::Read().names;
        service->Stop();
        const fs::path file = service->DatabaseFile(File::Scheduler);
        KillAWriterOf(file);
        const auto octets = Octets(file);
        QCOMPARE(TaskNames::Read().read.outcome, ReadOutcome::HotJournal);
        QVERIFY(Octets(file) == octets);
        auto read = std::async(std::launch::async, [] { return TaskNames::Read({}, Patient); });
        QVERIFY(read.wait_for(20ms) == std::future_status::timeout);
        Repair(file);
        const TaskNames tasks = read.get();
        QVERIFY2(tasks.read, qPrintable(tasks.read.detail));
        QCOMPARE(tasks.names, good);
    }

    void aWalkLetsGoOfTheDatabase_data() { AddJournalModes(); }

    void aWalkLetsGoOfTheDatabase() {
        QFETCH(const devservice::JournalMode, journal);
        ServiceFixture service(With(journal));
        Fill(service);
        Connection writer(service->DatabaseFile(File::Scheduler), 0);
        const std::string change = "UPDATE Scheduler SET RunCount=RunCount+1";
        SchedulerStore store({}, Impatient);
        for (const bool all : {true, false}) {
            int rows = 0;
            QVERIFY(store.EnumTasks([&](const TaskRecord&) { return ++rows > 0 && all; }));
            QCOMPARE(rows, all ? 2 : 1);
            QVERIFY_THROWS_NO_EXCEPTION(writer.Execute(change)); // it throws while a lock is held
        }
        QVERIFY(store.LookupTask(TaskIdText));
        QVERIFY_THROWS_NO_EXCEPTION(writer.Execute(change));
    }

    void aFastWriterAndWalksDoNotHinderEachOther_data() { AddJournalModes(); }

    void aFastWriterAndWalksDoNotHinderEachOther() {
        QFETCH(const devservice::JournalMode, journal);
        constexpr int Tasks = 300;
        ServiceFixture service(With(journal));
        PutManyTasks(service, Tasks);
        const QStringList good = TaskNames::Read().names;
        QCOMPARE(good.size(), Tasks);
        service->SetFault(DatabaseFault::FastWriter, File::Scheduler, 1ms);
        const auto walkOften = [&good, &service] {
            const int commits = service->FastWriterStatistics().commits;
            int walks = 0;
            // Until the writer has got through a number of times, which it does not when walks starve it.
            while (walks < 30 || service->FastWriterStatistics().commits < commits + 30) {
                const TaskNames tasks = TaskNames::Read({}, {});
                if (!tasks.read || tasks.names != good)
                    return u"walk %1: %2, %3 rows"_s.arg(walks)
                        .arg(tasks.read.Sentence())
                        .arg(tasks.names.size());
                ++walks;
            }
            return QString();
        };
        auto other = std::async(std::launch::async, walkOften);
        QCOMPARE(walkOften(), QString());
        QCOMPARE(other.get(), QString());
        QCOMPARE(service->FastWriterStatistics().failures, 0);
    }

    void aPathThatIsTooLongIsRefused() {
        ServiceFixture service;
        const TaskNames before = TaskNames::Read();
        QVERIFY(before.read);
        const ReadResult read = EnumSubTasks(
            QString(520, u'x'), [](const SubTaskRecord&) { return true; }, {}, Impatient);
        QCOMPARE(read.outcome, ReadOutcome::Failed);
    }
};

BTASK_TEST(DatabaseTest);
#include "DatabaseTest.moc"
