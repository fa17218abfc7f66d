// Labels: threads
#include "RawHttp.h"
#include "stores/ProcessLogStore.h"
#include "stores/SchedulerStore.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "zep/LiveCounters.h"

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;
using namespace devservice;
using File = devservice::Database;
using namespace std::chrono_literals;

namespace {

const std::string Id = "{00000000-0000-4000-8000-000000000001}";

/// Every row of a query, its columns joined by bars.
QStringList Rows(const std::filesystem::path& file, const char* sql) {
    QStringList rows;
    sqlite3* connection = nullptr;
    sqlite3_open_v2(file.string().c_str(), &connection, SQLITE_OPEN_READONLY, nullptr);
    // The fast writer holds its lock for moments at a time; a database that is held locked stays so.
    sqlite3_busy_timeout(connection, 200);
    const auto collect = [](void* list, int count, char** values, char**) {
        QStringList row;
        for (int i = 0; i < count; ++i)
            row << QString::fromUtf8(values[i] ? values[i] : "NULL");
        static_cast<QStringList*>(list)->append(row.join(u'|'));
        return 0;
    };
    if (sqlite3_exec(connection, sql, collect, &rows, nullptr) != SQLITE_OK)
        rows = {u"error: "_s + QString::fromUtf8(sqlite3_errmsg(connection))};
    sqlite3_close(connection);
    return rows;
}

QString TaskRow(ServiceFixture& service) {
    return Rows(service->DatabaseFile(File::Scheduler), "SELECT TaskState, NextRun, LastRun FROM Scheduler")
        .join(u';');
}

QString SubTaskStates(ServiceFixture& service) {
    return Rows(service->SubTaskFile(Id), "SELECT TaskState FROM SubTaskDBWorker ORDER BY TaskIndex")
        .join(u',');
}

int Command(ServiceFixture& service, const char* command, const char* more = "") {
    return Send(service->Port(), Request("GET", QByteArray("/schedule/") + command + Id.c_str() + more))
        .Status();
}

Task OneTask(ScheduleKind kind, std::vector<SubTask> subTasks) {
    Task task = MakeTask(Id, "Task");
    task.schedule.kind = kind;
    task.subTasks = std::move(subTasks);
    return task;
}

QStringList EverythingOf(DevService& service) {
    return Rows(service.DatabaseFile(File::Scheduler),
                "SELECT TaskId, TaskState, NextRun, LastRun FROM Scheduler") +
           Rows(service.DatabaseFile(File::AuditTrace), "SELECT * FROM AuditTrace") +
           Rows(service.DatabaseFile(File::ProcessLog), "SELECT * FROM TaskProcessLog") +
           Rows(service.DatabaseFile(File::History), "SELECT * FROM History");
}

} // namespace

class SimulationTest : public QObject {
    Q_OBJECT

private slots:
    void aTaskRunsToItsEnd_data() {
        const Columns<int, QString, QString, QString, QString> row("kind", "file", "row", "subTasks", "log");
        row("scheduled again", int(ScheduleKind::Backup), "a.txt",
            "0|2025-03-04 21:00:00|2025-03-04 09:00:00", "2,2", "Completed successfully|2|0|2");
        row("once", int(ScheduleKind::Once), "a.txt", "5|NULL|2025-03-04 09:00:00", "2,2",
            "Completed successfully|2|0|2");
        row("a file that stays open", int(ScheduleKind::Once), "a.qdb", "3|NULL|2025-03-04 09:00:00", "2,4",
            "1 sub-task failed|2|1|2");
    }

    void aTaskRunsToItsEnd() {
        const auto [kind, file, row, subTasks, log] = Fetched<int, QString, QString, QString, QString>();
        ServiceFixture service;
        service->PutTask(OneTask(ScheduleKind(kind), {MakeSubTask(1, "MKCOL", "x"),
                                                      MakeSubTask(2, "PUT", file.toStdString(), 50'000)}));
        QCOMPARE(Command(service, "startnow?"), 200);
        QVERIFY(TaskRow(service).startsWith(u'1'));
        service->Advance(2min);
        QCOMPARE(TaskRow(service), row);
        QCOMPARE(SubTaskStates(service), subTasks);
        QCOMPARE(
            Rows(service->DatabaseFile(File::ProcessLog),
                 "SELECT StopReason, TotalSubTasks, FailedSubTasks, ProcessedSubTasks FROM TaskProcessLog")
                .join(u';'),
            log);
        const QString levels = Rows(service->DatabaseFile(File::AuditTrace),
                                    "SELECT max(Level), min(substr(Trace, 1, 42)) FROM AuditTrace")
                                   .join(u';');
        QCOMPARE(levels, QString::fromStdString((file.endsWith("qdb"_L1) ? "2|$$" : "0|$$") + Id + "$ "));
    }

    void commandsMoveATaskBetweenItsStates() {
        ServiceFixture service;
        service->PutTask(OneTask(ScheduleKind::Backup,
                                 {MakeSubTask(1, "PUT", "a", 4'000'000), MakeSubTask(2, "PUT", "b", 5),
                                  MakeSubTask(7, "GET", "/ChangeLog", 900'000'000)}));
        Command(service, "startnow?");
        service->Advance(400ms);
        QCOMPARE(SubTaskStates(service), u"1,2,1"_s);
        QCOMPARE(Command(service, "pausetask?"), 200);
        QVERIFY(TaskRow(service).startsWith(u'2'));
        QCOMPARE(SubTaskStates(service), u"0,2,0"_s);
        service->Advance(48h); // its schedule does not wake a paused task
        QVERIFY(TaskRow(service).startsWith(u'2'));
        QCOMPARE(Command(service, "delsub?", ":7"), 200);
        QCOMPARE(Command(service, "resumetask?"), 200);
        service->Advance(1min);
        QVERIFY(TaskRow(service).startsWith(u'0'));
        QCOMPARE(SubTaskStates(service), u"2,2"_s);
        QCOMPARE(Command(service, "deletetask?"), 200);
        QVERIFY(TaskRow(service).isEmpty());
        QVERIFY(!std::filesystem::exists(service->SubTaskFile(Id)));
        QCOMPARE(Command(service, "deletetask?"), 404);
    }

    void liveCountersFollow() {
        ServiceFixture service;
        LiveCounters counters;
        const auto before = counters.ZEPTraceCounterGet(TraceCounter::TaskTable);
        QVERIFY(before.has_value());
        service->PutTask(
            OneTask(ScheduleKind::Backup, {MakeSubTask(1, "PUT", "D:\\x\\a.txt", 4'000'000),
                                           MakeSubTask(2, "PUT", "b", 1'000, SubTaskState::PendingRetry),
                                           MakeSubTask(3, "PUT", "c", 1'000, SubTaskState::Failed),
                                           MakeSubTask(4, "PUT", "d", 1'000, SubTaskState::Done)}));
        QVERIFY(counters.ZEPTraceCounterGet(TraceCounter::TaskTable) != before);
        const SubTaskCounts counts = counters.ZEPTraceGetSTaskInfo(QString::fromStdString(Id));
        QCOMPARE(counts.total, std::optional<quint32>(4));
        QCOMPARE(counts.processed, std::optional<quint32>(3));
        QCOMPARE(counts.pendingRetry, std::optional<quint32>(2));
        Command(service, "startnow?");
        service->Advance(600ms);
        QStringList running;
        counters.ZEPEnumTasksWithCallBackEx({}, [&](const RunningSubTask& each) {
            const bool moves = each.bytesDone > 0 && each.bytesDone < each.bytesTotal;
            running << each.operation + u' ' + each.fileName + QLatin1String(moves ? " moves" : " stands");
            return true;
        });
        QCOMPARE(running, QStringList{u"Upload a.txt moves"_s});
        service->Stop();
        QVERIFY(!counters.ZEPTraceCounterGet(TraceCounter::TaskTable));
    }

    void goesOnFromTheFilesAfterARestart() {
        ServiceFixture service("desktop");
        service->Advance(30s);
        QStringList before = EverythingOf(service.Service());
        service->Stop();
        service->Start();
        QCOMPARE(EverythingOf(service.Service()), before);
        service->Advance(25h);
        const QStringList runs =
            Rows(service->DatabaseFile(File::ProcessLog),
                 "SELECT DISTINCT TaskId FROM TaskProcessLog WHERE StopTime > '2025-03-04 09:00:31'");
        QVERIFY2(runs.size() > 10, qPrintable(QString::number(runs.size())));
    }

    void theSameSeedGivesTheSameDay() {
        QList<QStringList> days;
        for (int run = 0; run < 2; ++run) {
            ServiceFixture service("desktop");
            service->Advance(3h);
            days << EverythingOf(service.Service());
        }
        QCOMPARE(days[0], days[1]);
    }

    void scenariosFillTheFiles_data() {
        const Columns<QString, QString> row("scenario", "counts");
        row("empty", "empty", "0 0 0 0");
        row("huge", "huge", "10000 10000 1000000 100000");
    }

    void scenariosFillTheFiles() {
        const auto [scenario, counts] = Fetched<QString, QString>();
        ServiceFixture service(scenario.toUtf8().constData());
        QStringList found = Rows(service->DatabaseFile(File::Scheduler),
                                 "SELECT count(*) FROM Scheduler UNION ALL SELECT count(*) FROM Scheduler "
                                 "WHERE length(Schedule) = 308");
        found += Rows(service->DatabaseFile(File::AuditTrace), "SELECT count(*) FROM AuditTrace");
        size_t most = 0;
        for (const Task& task : service->Tasks())
            most = std::max(most, service->FindTask(task.id)->subTasks.size());
        QCOMPARE(found.join(u' ') + u' ' + QString::number(most), counts);
    }

    void lifelikeDataAgreesWithItself_data() {
        const Columns<QString> row("scenario");
        row("desktop", "desktop");
        row("server", "server");
    }

    void lifelikeDataAgreesWithItself() {
        QFETCH(const QString, scenario);
        ServiceFixture service(scenario.toUtf8().constData());
        for (const Task& task : service->Tasks()) {
            const QString id = QString::fromStdString(task.id);
            std::vector<ProcessLogRecord> log;
            QVERIFY(FillProcessLog(id, log));
            const TaskInfo info = GetTaskInfo(id).task;
            const bool recurs = info.weekdays.scheduled && !info.nextRun.isEmpty();
            // Who has run more than once recurs, and who has run at all says when.
            QVERIFY2(log.size() <= 1 || recurs, task.name.c_str());
            QVERIFY2(log.empty() || info.lastRun >= log.back().startTime, task.name.c_str());
            if (task.state == TaskState::Running || log.empty())
                continue;
            QCOMPARE(info.lastRun, log.back().startTime);
            QCOMPARE(log.back().failedSubTasks > 0, task.state == TaskState::Failed);
            QVERIFY2(log.back().stopTime <= QString::fromStdString(FormatTime(service->Now())),
                     task.name.c_str());
            for (const ProcessLogRecord& run : log) {
                const int day = QDate::fromString(run.startTime.left(10), Qt::ISODate).dayOfWeek() % 7;
                QVERIFY2(info.weekdays.letters.isEmpty() || info.weekdays.letters[day] != u'_',
                         task.name.c_str());
            }
        }
    }

    void databaseFaultsShowAndPass_data() {
        const Columns<QString, QString> row("fault", "shown");
        row("locked", "db-locked", "error: database is locked");
        row("locked for a while", "db-locked:1", "1");
        row("truncated", "db-truncated", "error: database disk image is malformed");
        row("garbage", "db-garbage", "error: file is not a database");
        row("missing", "db-missing", "error: unable to open database file");
        row("schema", "db-schema", "error: no such table: Scheduler");
        row("writer", "db-writer:20@scheduler", "1");
    }

    void databaseFaultsShowAndPass() {
        QFETCH(const QString, fault);
        QFETCH(const QString, shown);
        for (const JournalMode journal : {JournalMode::Rollback, JournalMode::Wal}) {
            Options options;
            options.journal = journal;
            ServiceFixture service(options);
            service->PutTask(MakeTask(Id, "Task"));
            const auto count = [&] {
                return Rows(service->DatabaseFile(File::Scheduler), "SELECT count(*) FROM Scheduler")
                    .join(u';');
            };
            QVERIFY(service->SetFault(fault.toStdString()));
            QTRY_COMPARE(count(), shown);
            service->PutTask(MakeTask("{2}", "Made meanwhile"));
            QVERIFY(service->SetFault("db-missing@audit"));
            QVERIFY(service->SetFault("db-none")); // of every database
            QTRY_COMPARE(count(), u"2"_s);
            QVERIFY(std::filesystem::exists(service->DatabaseFile(File::AuditTrace)));
        }
    }
};

BTASK_TEST(SimulationTest);
#include "SimulationTest.moc"
