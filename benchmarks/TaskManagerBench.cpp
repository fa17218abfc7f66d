#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "benchmarks/TimingReader.h"
#include "development/WatchedReader.h"
#include "lanes/ThreadReader.h"
#include "list/BrenListCtrl.h"
#include "list/RecordPanel.h"
#include "look/Formatters.h"
#include "taskman/SubTaskTable.h"
#include "taskman/SubTaskText.h"
#include "taskman/TaskListPanel.h"
#include "taskman/TraceTable.h"

#include <QApplication>
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Tasks = 10'000;
constexpr int SubTasks = 100'000;
constexpr int Traces = 1'000'000;
constexpr int Rounds = 9;
constexpr QSize PageSize(770, 500);

void MeasureCards(BenchTable& table) {
    ConsoleParts bench("empty");
    std::vector<devservice::Task> tasks;
    for (int i = 0; i < Tasks; ++i)
        tasks.push_back(devservice::MakeTask("task-" + std::to_string(i), "Task " + std::to_string(i)));
    bench.home.Service().PutTasks(std::move(tasks));
    TimingReader reader;
    const Console console = bench.On(reader);
    CTaskListPanel panel(console, TaskFilter::MyTasks);
    panel.resize(PageSize);
    panel.Activate();
    reader.RunAll();
    Samples lane;
    Samples window;
    for (int round = 0; round < Rounds; ++round) {
        panel.Reload();
        reader.RunAll();
        lane.Add(reader.lane);
        window.Add(reader.window);
    }
    table.Add(
        {.name = "Refresh of 10,000 tasks, reader", .unit = "ms", .ours = lane.Median(), .maxOurs = 150.0});
    table.Add(
        {.name = "Refresh of 10,000 tasks, window", .unit = "ms", .ours = window.Median(), .maxOurs = 10.0});
}

QString TextOf(sqlite3_stmt* row, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    return text ? QString::fromUtf8(text, sqlite3_column_bytes(row, column)) : QString();
}

/// Steps over the rows of the plainest statement; false from `each` ends that.
void Walk(const std::string& file, const std::string& sql, const std::function<bool(sqlite3_stmt*)>& each) {
    sqlite3* connection = nullptr;
    sqlite3_stmt* row = nullptr;
    if (sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK ||
        sqlite3_prepare_v2(connection, sql.c_str(), -1, &row, nullptr) != SQLITE_OK)
        throw std::runtime_error("the bare loop cannot read the database");
    while (sqlite3_step(row) == SQLITE_ROW && each(row))
        continue;
    sqlite3_finalize(row);
    sqlite3_close(connection);
}

/// The plainest loop that makes the same strings.
std::vector<QStringList> BareSubTasks(const std::string& file, const QString& id) {
    std::vector<QStringList> rows;
    Walk(file, "SELECT * FROM SubTaskDBWorker WHERE (TaskState=0 OR TaskState=0) ORDER BY TaskIndex ASC",
         [&](sqlite3_stmt* row) {
             const QString type = TextOf(row, 1);
             const QString parameter = TextOf(row, 2);
             rows.push_back({id, u"#ICON:8022@@Click to see related trace"_s,
                             u"#ICON:%1#@@Uploading..."_s.arg(209), SubTaskName(type, parameter),
                             ShownParameter(parameter, {}), TextOf(row, 3),
                             QString::number(sqlite3_column_int(row, 8)),
                             FormatSize(static_cast<quint64>(sqlite3_column_int64(row, 5))), TextOf(row, 4),
                             u"#ICON:208@@Click to delete the failed sub-task"_s});
             return true;
         });
    if (rows.size() != SubTasks)
        throw std::runtime_error("the bare loop lost rows");
    return rows;
}

struct Filling {
    double first = 0;
    double all = 0;
};

/// Opens a page whose list is empty, as a click does.
template <typename Panel>
Filling Fill(Panel& panel, int rows) {
    panel.resize(PageSize);
    QElapsedTimer clock;
    clock.start();
    panel.Activate();
    const CBrenListCtrl* list = panel.template findChild<CBrenListCtrl*>();
    Filling filling;
    MillisecondsUntil(clock, [list] { return list->Rows().rowCount() > 0; });
    panel.grab();
    filling.first = static_cast<double>(clock.nsecsElapsed()) / 1e6;
    filling.all = MillisecondsUntil(clock, [&] { return list->Rows().rowCount() == rows; });
    return filling;
}

void MeasureSubTasks(BenchTable& table) {
    ConsoleParts bench("empty");
    const std::string id = "{7D2F4C1E-0B0A-4E1B-9C55-000000000001}";
    std::vector<devservice::SubTask> subTasks;
    for (int i = 1; i <= SubTasks; ++i)
        subTasks.push_back(devservice::MakeSubTask(
            i, "PUT", "/home/Photos/2026/IMG_" + std::to_string(i) + ".dng", i * 7919));
    bench.home.Service().PutTask(devservice::MakeTask(id, "Photos"));
    bench.home.Service().PutSubTasks(id, std::move(subTasks));
    const std::string file = bench.home.Service().SubTaskFile(id).string();
    TaskRow task;
    task.id = QString::fromStdString(id);
    Samples first;
    Samples all;
    Samples bare;
    ThreadReader reader; // the click comes in a console that has run for a while
    const Console console = bench.On(reader);
    for (int round = 0; round < Rounds; ++round) {
        RecordPanel panel(console, SubTaskTable(task, SubtaskView::Pending));
        const Filling filling = Fill(panel, SubTasks);
        first.Add(filling.first);
        all.Add(filling.all);
        bare.Add(MillisecondsOf([&] { benchmark::DoNotOptimize(BareSubTasks(file, task.id).data()); }));
    }
    table.Add({.name = "100,000 pending sub-tasks, first rows",
               .unit = "ms",
               .ours = first.Median(),
               .maxOurs = 100.0});
    table.Add({.name = "100,000 pending sub-tasks, all rows",
               .unit = "ms",
               .ours = all.Median(),
               .reference = bare.Median(),
               .maxRatio = 1.3});
}

void MeasureTraces(BenchTable& table) {
    ConsoleParts bench("empty");
    const std::string id = "{7D2F4C1E-0B0A-4E1B-9C55-000000000002}";
    bench.home.Service().PutTask(devservice::MakeTask(id, "Archive"));
    std::vector<devservice::AuditRow> rows;
    for (int i = 0; i < Traces; ++i)
        rows.push_back({i % 3,
                        devservice::TaskTrace(id, "Upload of scan " + std::to_string(i) + " has ended"),
                        bench.home.Service().Now() + std::chrono::seconds(i)});
    bench.home.Service().AddAuditRows(rows);
    const std::string file = bench.home.Service().DatabaseFile(devservice::Database::AuditTrace).string();
    const std::string sql = "SELECT * FROM AuditTrace  WHERE Trace LIKE '%%" + id + "%%' ORDER By DT DESC";
    TaskRow task;
    task.id = QString::fromStdString(id);
    Samples first;
    Samples bare;
    Samples cancel;
    for (int round = 0; round < 5; ++round) {
        bare.Add(MillisecondsOf([&] { Walk(file, sql, [](sqlite3_stmt*) { return false; }); }));
        ThreadReader threads;
        WatchedReader reader(threads);
        const Console console = bench.On(reader);
        RecordPanel panel(console, TraceTable(task));
        panel.resize(PageSize);
        QElapsedTimer clock;
        clock.start();
        panel.Activate();
        const auto* list = panel.findChild<CBrenListCtrl*>();
        MillisecondsUntil(clock, [list] { return list->Rows().rowCount() > 0; });
        panel.grab();
        first.Add(static_cast<double>(clock.nsecsElapsed()) / 1e6);
        clock.restart();
        panel.Deactivate();
        cancel.Add(MillisecondsUntil(clock, [&reader] { return reader.IsIdle(); }));
    }
    table.Add({.name = "1,000,000 traces, first screen beyond SQLite's first row",
               .unit = "ms",
               .ours = first.Median() - bare.Median(),
               .maxOurs = 100.0});
    table.Add({.name = "1,000,000 traces, SQLite's own first row", .unit = "ms", .ours = bare.Median()});
    table.Add({.name = "1,000,000 traces, end of a cancelled read",
               .unit = "ms",
               .ours = cancel.Percentile(100),
               .maxOurs = 50.0});
}

const BenchRegistration Cards("task cards", MeasureCards);
const BenchRegistration PendingSubTasks("task subtasks", MeasureSubTasks);
const BenchRegistration AuditTraces("task traces", MeasureTraces);

} // namespace
