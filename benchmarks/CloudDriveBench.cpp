#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "benchmarks/Directories.h"
#include "benchmarks/PaintCount.h"
#include "clouddrive/VDirListPanel.h"
#include "lanes/ThreadReader.h"

#include <stdexcept>

namespace {

constexpr int Rounds = 9;

void MeasureRefresh(BenchTable& table) {
    ConsoleParts bench("empty");
    bench.home.Service().SetVirtualDirectories(MakeDirectories(CVDirListPanel::MaxCards));
    ThreadReader threads;
    WatchedReader reader(threads);
    const Console console = bench.On(reader);
    CVDirListPanel panel(console);
    panel.resize(770, 500);
    panel.Activate();
    RunUntilIdle(reader);
    if (panel.CardCount() != CVDirListPanel::MaxCards)
        throw std::runtime_error("not all virtual directories are shown");
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
    table.Add({.name = "100 virtual directories, repaints by 9 refreshes without a change",
               .unit = "paints",
               .ours = static_cast<double>(paints.Take()),
               .maxOurs = 0});
    table.Add({.name = "100 virtual directories, refresh", .unit = "ms", .ours = times.Median()});
}

const BenchRegistration Refresh("drive refresh", MeasureRefresh);

} // namespace
