#include "benchmarks/BenchTable.h"
#include "benchmarks/Home.h"
#include "ctl/Btaskctl.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

using devservice::Database;

namespace {

constexpr int Tasks = 100'000;
constexpr int FewTasks = 10'000;
constexpr int Traces = 1'000'000;
constexpr int FewTraces = 100'000;

void AddTasks(devservice::DevService& service, int count) {
    std::vector<devservice::Task> tasks;
    tasks.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        tasks.push_back(
            devservice::MakeTask("{7D2F4C1E-0B0A-4E1B-9C55-" + number + "}", "Photos of the year " + number));
        tasks.back().description = "D:\\Photos\\" + number + "\t/Archive/Photos\t*";
    }
    service.PutTasks(std::move(tasks));
}

void AddTraces(devservice::DevService& service, int count) {
    service.Execute(service.DatabaseFile(Database::AuditTrace),
                    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                        std::to_string(count) +
                        ") INSERT INTO AuditTrace SELECT 0, 'Upload of \"E:\\Archive\\scan ' || i || "
                        "'.tif\" has ended', datetime('2025-03-04', '-' || i || ' seconds') FROM n");
}

/// Runs the program as a script would; what it writes goes nowhere.
void Run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    if (!process.waitForFinished(60'000) || process.exitCode() != 0)
        throw std::runtime_error((program + u" went wrong: "_s).toStdString() +
                                 process.readAllStandardError().toStdString());
}

/// The same in this process, which can be asked for its memory.
void RunHere(const QStringList& arguments) {
    QBuffer in;
    QFile out(QProcess::nullDevice());
    QBuffer error;
    error.open(QIODevice::WriteOnly);
    if (!out.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        RunBtaskctl(arguments, in, out, error) != CtlExit::Done)
        throw std::runtime_error("btaskctl went wrong");
}

void MeasureTasks(BenchTable& table) {
    BenchHome home("empty");
    AddTasks(home.Service(), Tasks);
    const QString file = QString::fromStdString(home.Service().DatabaseFile(Database::Scheduler).string());
    const QString sql =
        u"SELECT TaskId AS id, TaskType AS type, TaskName AS name, Description AS description, "
        "length(Schedule) AS scheduleType, TaskState AS state, CASE TaskState WHEN 0 THEN "
        "'Pending' WHEN 1 THEN "
        "'Running' WHEN 2 THEN 'Paused' WHEN 3 THEN 'Failed' WHEN 5 THEN 'Completed' END AS "
        "stateText, LastRun "
        "AS lastRun, NextRun AS nextRun FROM Scheduler ORDER BY StartTime DESC"_s;
    const QString program = QCoreApplication::applicationDirPath() + u"/btaskctl"_s;
    const PairSamples samples = MeasurePair(
        9,
        [&] {
            Run(program, {u"tasks"_s, u"--json"_s});
        },
        [&] {
            Run(u"sqlite3"_s, {u"-json"_s, file, sql});
        });
    table.Add({.name = "btaskctl tasks --json, 100,000, beside sqlite3 -json",
               .unit = "ms",
               .ours = samples.ours.Median(),
               .reference = samples.reference.Median(),
               .maxRatio = 1.5});
}

/// Peak memory with many rows, beside that with a tenth of them.
void MeasureMemory(BenchTable& table, const char* name, const QStringList& arguments, int many, int few,
                   void (*add)(devservice::DevService&, int)) {
    double peaks[2] = {};
    for (const int i : {0, 1}) {
        BenchHome home("empty");
        add(home.Service(), i == 0 ? many : few);
        peaks[i] = PeakMemoryOf([&] { RunHere(arguments); });
    }
    table.Add({.name = name, .unit = "MiB", .ours = peaks[0], .reference = peaks[1], .maxRatio = 1.5});
}

void MeasurePeaks(BenchTable& table) {
    MeasureMemory(table, "btaskctl tasks --json, peak of 100,000 beside 10,000", {u"tasks"_s, u"--json"_s},
                  Tasks, FewTasks, AddTasks);
    MeasureMemory(table, "btaskctl audit --max 0, peak of 1,000,000 / 100,000",
                  {u"audit"_s, u"--max"_s, u"0"_s}, Traces, FewTraces, AddTraces);
}

const BenchRegistration TaskList("shell tasks", MeasureTasks);
const BenchRegistration Peaks("shell memory", MeasurePeaks);

} // namespace
