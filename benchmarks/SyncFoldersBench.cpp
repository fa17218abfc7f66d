#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "benchmarks/HeldReader.h"
#include "benchmarks/PaintCount.h"
#include "lanes/ThreadReader.h"
#include "list/BrenListCtrl.h"
#include "syncfolders/DropFolder.h"
#include "syncfolders/DropFolderChanges.h"
#include "syncfolders/DropFolderList.h"

#include <sqlite3.h>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Folders = CDropFolderList::MaxCards;
constexpr int Changes = 1'000'000;
constexpr int Shown = 200;
constexpr int Versions = 10'000;
constexpr int Rounds = 9;
constexpr int Seconds = 15;
constexpr QSize PageSize(770, 500);

/// Folders whose tasks are paused, so that nothing counts down.
void PutFolders(devservice::DevService& service) {
    std::string list;
    std::vector<devservice::Task> tasks;
    for (int i = 0; i < Folders; ++i) {
        const std::string name = "Folder " + std::to_string(i);
        list += name + "\t/sync/" + name + '\n';
        tasks.push_back(devservice::MakeTask("{task-" + std::to_string(i) + '}',
                                             "Cloud Sync Folder Task For " + name, "Cloud Sync Folder Task",
                                             TaskState::Paused));
    }
    service.PutTasks(std::move(tasks));
    service.SetSetting("DropFolders", list);
}

void HandleEventsFor(int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    while (!clock.hasExpired(milliseconds))
        QApplication::processEvents(QEventLoop::AllEvents, 10);
}

void MeasureRequests(BenchTable& table) {
    ConsoleParts bench("empty");
    devservice::DevService& service = bench.home.Service();
    PutFolders(service);
    {
        HeldReader reader;
        const Console console = bench.On(reader);
        CDropFolderList panel(console);
        panel.resize(PageSize);
        panel.Activate();
        panel.Reload();
        HandleEventsFor(100);
        table.Add({.name = "100 sync folders, requests beside the lanes",
                   .unit = "requests",
                   .ours = double(service.Requests().size()),
                   .maxOurs = 0});
    }
    ThreadReader threads;
    WatchedReader reader(threads);
    const Console console = bench.On(reader);
    CDropFolderList panel(console);
    panel.resize(PageSize);
    service.ForgetRequests();
    panel.Activate();
    std::size_t most = 0;
    for (int second = 0; second < Seconds; ++second) {
        HandleEventsFor(1000);
        most = std::max(most, service.Requests().size());
        service.ForgetRequests();
    }
    if (panel.CardCount() != Folders)
        throw std::runtime_error("not all sync folders are shown");
    table.Add({.name = "100 new sync folders, requests in the busiest second",
               .unit = "requests",
               .ours = double(most),
               .maxOurs = 20});
    PaintCount paints(panel);
    panel.update();
    RunUntilIdle(reader);
    if (paints.Take() == 0)
        throw std::runtime_error("no repaint is counted");
    Samples times;
    for (int round = 0; round < Rounds; ++round)
        times.Add(MillisecondsOf([&] {
            panel.Reload();
            RunUntilIdle(reader);
        }));
    table.Add({.name = "100 sync folders, repaints by 9 refreshes without a change",
               .unit = "paints",
               .ours = double(paints.Take()),
               .maxOurs = 0});
    table.Add({.name = "100 sync folders, refresh", .unit = "ms", .ours = times.Median()});
}

/// SQLite's own way to the first rows.
void WalkChanges(const std::string& file) {
    sqlite3* connection = nullptr;
    sqlite3_stmt* row = nullptr;
    if (sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK ||
        sqlite3_prepare_v2(connection,
                           "SELECT * FROM History WHERE VDir='Team' ORDER BY Stamp DESC LIMIT 200", -1, &row,
                           nullptr) != SQLITE_OK)
        throw std::runtime_error("the bare loop cannot read the history");
    while (sqlite3_step(row) == SQLITE_ROW)
        continue;
    sqlite3_finalize(row);
    sqlite3_close(connection);
}

/// Until the list shows so many rows.
double Fill(CBrenPanel& panel, const CBrenListCtrl& list, int rows, const std::function<void()>& begin) {
    QElapsedTimer clock;
    clock.start();
    begin();
    while (list.Rows().rowCount() < rows) {
        if (clock.hasExpired(60'000))
            throw std::runtime_error("the rows never came");
        QApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    panel.grab();
    return double(clock.nsecsElapsed()) / 1e6;
}

void MeasureChanges(BenchTable& table) {
    ConsoleParts bench("empty");
    devservice::DevService& service = bench.home.Service();
    const auto file = service.DatabaseFile(devservice::Database::History);
    service.Execute(file,
                    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                        std::to_string(Changes) +
                        ") INSERT INTO History SELECT '/43811DCD-8C5A-4EF9-B903-2EEA9CE88487/Team/scan ' "
                        "|| i, 'm#' || (13385552400 - i), 'mara', 'STUDY-PC', 'Team', 13385552400 - i "
                        "FROM n");
    ThreadReader threads;
    const Console console = bench.On(threads);
    Samples ours;
    Samples bare;
    for (int round = 0; round < Rounds; ++round) {
        CDropFolderChanges panel(console, u"Team"_s, [](const QString&) {});
        panel.resize(PageSize);
        panel.EnsureCreated();
        ours.Add(Fill(panel, *panel.findChild<CBrenListCtrl*>(), Shown, [&panel] { panel.Activate(); }));
        bare.Add(MillisecondsOf([&file] { WalkChanges(file.string()); }));
    }
    table.Add({.name = "Change log over 1,000,000 rows, first screen beyond SQLite's own",
               .unit = "ms",
               .ours = ours.Median() - bare.Median(),
               .maxOurs = 100.0});
}

void MeasureVersions(BenchTable& table) {
    ConsoleParts bench("empty");
    std::string lines;
    for (int i = Versions; i > 0; --i)
        lines +=
            "m\t" + std::to_string(13'385'552'400 + i) + "\t" + std::to_string(i % 4) + "\tSTUDY-PC\tmara\n";
    bench.home.Service().SetAnswer("/DavCache/getfilever", devservice::Answer{200, lines});
    ThreadReader threads;
    const Console console = bench.On(threads);
    CDropFolderList list(console);
    Samples ours;
    for (int round = 0; round < Rounds; ++round) {
        CDropFolder panel(console, list.Folders(), {u"Team"_s, u"/sync/Team"_s});
        panel.resize(PageSize);
        panel.Activate();
        ours.Add(Fill(panel, *panel.findChildren<CBrenListCtrl*>().last(), Versions,
                      [&panel] { panel.ShowVersions(u"/plan.odt"_s); }));
    }
    table.Add({.name = "10,000 versions of a file on screen",
               .unit = "ms",
               .ours = ours.Median(),
               .maxOurs = 100.0});
}

const BenchRegistration Requests("sync requests", MeasureRequests);
const BenchRegistration ChangeLog("sync changes", MeasureChanges);
const BenchRegistration VersionLines("sync versions", MeasureVersions);

} // namespace
