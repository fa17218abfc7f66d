#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "benchmarks/Directories.h"
#include "clouddrive/VDirListPanel.h"
#include "development/WatchedReader.h"
#include "lanes/ThreadReader.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>

#include <stdexcept>

namespace {

constexpr int Rounds = 9;

/// Counts the paint events of a widget and of all below it.
class PaintCount : public QObject {
public:
    explicit PaintCount(QWidget& widget) : m_widget(widget) { qApp->installEventFilter(this); }

    int Take() { return std::exchange(m_count, 0); }

private:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->isWidgetType() &&
            (watched == &m_widget || m_widget.isAncestorOf(static_cast<QWidget*>(watched))))
            ++m_count;
        return false;
    }

    QWidget& m_widget;
    int m_count = 0;
};

void RunUntilIdle(const WatchedReader& reader) {
    QElapsedTimer clock;
    clock.start();
    while (!reader.IsIdle()) {
        if (clock.hasExpired(60'000))
            throw std::runtime_error("the list was never read");
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    QApplication::processEvents();
    QApplication::sendPostedEvents();
    QApplication::processEvents();
}

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
