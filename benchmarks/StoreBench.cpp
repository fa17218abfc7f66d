#include "benchmarks/BenchTable.h"
#include "benchmarks/Home.h"
#include "stores/SchedulerStore.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <stdexcept>

namespace {

constexpr int Rows = 100'000;
constexpr int ScheduleSize = 308;

void FillScheduler(devservice::DevService& service) {
    std::vector<devservice::Task> tasks;
    tasks.reserve(Rows);
    for (int i = 0; i < Rows; ++i) {
        const std::string number = std::to_string(i);
        tasks.push_back(
            devservice::MakeTask("{7D2F4C1E-0B0A-4E1B-9C55-" + number + "}", "Photos of the year " + number));
    }
    service.PutTasks(std::move(tasks));
}

QString TextOf(sqlite3_stmt* row, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    return text ? QString::fromUtf8(text, sqlite3_column_bytes(row, column)) : QString();
}

/// The plainest loop that makes the same strings.
void WalkBare(const std::string& file) {
    sqlite3* connection = nullptr;
    sqlite3_stmt* row = nullptr;
    if (sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK ||
        sqlite3_prepare_v2(connection, "SELECT * FROM Scheduler ORDER BY  StartTime DESC", -1, &row,
                           nullptr) != SQLITE_OK)
        throw std::runtime_error("the bare loop cannot read the database");
    int rows = 0;
    while (sqlite3_step(row) == SQLITE_ROW) {
        if (sqlite3_column_bytes(row, 6) != ScheduleSize)
            continue;
        for (const int column : {0, 2, 3, 4, 5, 8}) {
            QString text = TextOf(row, column);
            benchmark::DoNotOptimize(text.data());
        }
        benchmark::DoNotOptimize(sqlite3_column_int(row, 7));
        ++rows;
    }
    sqlite3_finalize(row);
    sqlite3_close(connection);
    if (rows != Rows)
        throw std::runtime_error("the bare loop lost rows");
}

void WalkOurs() {
    int rows = 0;
    const ReadResult read = EnumAllTasks([&](const TaskRecord& task) {
        benchmark::DoNotOptimize(&task);
        ++rows;
        return true;
    });
    if (!read || rows != Rows)
        throw std::runtime_error("the store lost rows");
}

void MeasureTaskWalk(BenchTable& table) {
    BenchHome home("empty");
    FillScheduler(home.Service());
    const std::string file = home.Service().DatabaseFile(devservice::Database::Scheduler).string();
    const PairSamples samples = MeasurePair(15, WalkOurs, [&] { WalkBare(file); });
    table.Add({.name = "EnumTasks over 100,000 rows",
               .unit = "ms",
               .ours = samples.ours.Median(),
               .reference = samples.reference.Median(),
               .maxRatio = 1.1});
}

const BenchRegistration TaskWalk("store tasks", MeasureTaskWalk);

} // namespace
