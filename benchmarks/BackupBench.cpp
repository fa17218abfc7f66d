#include "backup/BackupPanel.h"
#include "backup/BackupTaskList.h"
#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "benchmarks/IdleShare.h"
#include "benchmarks/TimingReader.h"
#include "lanes/ThreadReader.h"
#include "platform/Registry.h"

#include <stdexcept>

namespace {

constexpr QSize PageSize(770, 500);
constexpr int Rounds = 9;
constexpr int LogRows = 50'000;

void PutBackups(devservice::DevService& service, int count) {
    std::vector<devservice::Task> tasks;
    tasks.reserve(std::size_t(count));
    for (int i = 0; i < count; ++i)
        tasks.push_back(devservice::MakeTask("backup-" + std::to_string(i), "Backup " + std::to_string(i)));
    service.PutTasks(std::move(tasks));
}

/// The log of their runs, in which nothing is found but by reading all of it.
void FillLog(devservice::DevService& service, int backups) {
    service.Execute(
        service.DatabaseFile(devservice::Database::ProcessLog),
        "DROP INDEX TaskProcessLogByTask; WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n "
        "WHERE i < " +
            std::to_string(LogRows - 1) + ") INSERT INTO TaskProcessLog SELECT NULL, 'backup-' || (i % " +
            std::to_string(backups) +
            "), datetime('2025-03-01', '-' || i || ' minutes'), datetime('2025-03-01 00:05', '-' || i || "
            "' minutes'), 'Completed successfully', 4310, (i % 7 = 0) * 12, 4310 FROM n");
}

/// A section that begins with its list, as a backup server has it, which the value 0 says.
void ShowListsAlone() {
    const platform::RegistryKey key{platform::RegistryRoot::LocalMachine, "SOFTWARE\\Brenvia"};
    if (!platform::WriteRegistryDword(key, "BrQBSMode", 0))
        throw std::runtime_error("the machine's values cannot be written");
}

void MeasureCards(BenchTable& table) {
    constexpr int Backups = 10'000;
    ConsoleParts bench("empty");
    PutBackups(bench.home.Service(), Backups);
    FillLog(bench.home.Service(), 100);
    TimingReader reader;
    const Console console = bench.On(reader);
    CBackupTaskList list(console, BackupFlavour::Mirrored);
    list.resize(PageSize);
    list.Activate();
    reader.RunAll();
    QApplication::processEvents();
    reader.RunAll();
    Samples lane;
    Samples window;
    for (int round = 0; round < Rounds; ++round) {
        list.Reload();
        reader.RunAll();
        lane.Add(reader.lane);
        window.Add(reader.window);
    }
    table.Add(
        {.name = "Refresh of 10,000 backups, reader", .unit = "ms", .ours = lane.Median(), .maxOurs = 150.0});
    table.Add({.name = "Refresh of 10,000 backups, window",
               .unit = "ms",
               .ours = window.Median(),
               .maxOurs = 10.0});
}

void MeasureOpening(BenchTable& table) {
    ConsoleParts bench("empty");
    ShowListsAlone();
    PutBackups(bench.home.Service(), 1000);
    FillLog(bench.home.Service(), 100);
    Samples first;
    ThreadReader reader; // the click comes in a console that has run for a while
    const Console console = bench.On(reader);
    for (int round = 0; round < Rounds; ++round) {
        QElapsedTimer clock;
        clock.start();
        CBackupPanel panel(console);
        panel.resize(PageSize);
        panel.Activate();
        const auto* list = panel.findChild<CBackupTaskList*>();
        MillisecondsUntil(clock, [list] { return list->CardCount() > 0; });
        panel.grab();
        first.Add(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    }
    table.Add({.name = "Opening the section with 1,000 backups, first cards",
               .unit = "ms",
               .ours = first.Median(),
               .maxOurs = 100.0});
}

void MeasureIdle(BenchTable& table) {
    BenchHome home("empty");
    ShowListsAlone();
    PutBackups(home.Service(), 100);
    FillLog(home.Service(), 100);
    table.Add({.name = "Idle with 100 backups, share of a core over 60 s",
               .unit = "%",
               .ours = IdleShareOf("Backup and Restore"),
               .maxOurs = 0.5});
}

const BenchRegistration Cards("backup cards", MeasureCards);
const BenchRegistration Opening("backup opening", MeasureOpening);
const BenchRegistration Idle("backup idle", MeasureIdle);

} // namespace
