#include "benchmarks/BenchTable.h"
#include "lanes/ThreadReader.h"
#include "list/BrenListCtrl.h"
#include "look/Look.h"
#include "page/WindowPrompts.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPaintEvent>
#include <QScrollBar>
#include <QTableWidget>

#include <memory>
#include <random>
#include <stdexcept>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Rows = 1'000'000;
constexpr int RefreshedRows = 1'000;
constexpr int Columns = 5;
constexpr QSize Window(770, 500);

/// Every kind of cell, each row another text.
QStringList CellsOf(int row) {
    const QString number = QString::number(row);
    const QString kinds[] = {u"##/home/Photos/2026/11/deleted-"_s + number, u"#COLOR:YELLOW"_s,
                             u"Uploading..."_s, u"refused: quota of user "_s + number};
    return {u"#ICON:%1#@@Uploading..."_s.arg(209 + row % 2), u"/home/Photos/2026/11/IMG_%1.dng"_s.arg(number),
            u"#Progress:%1 1000000@@%1 of 1000000 processed, 4 running"_s.arg(number),
            u"%1.%2 MB"_s.arg(row % 4096).arg(row % 1000, 3, 10, QChar(u'0')), kinds[row % 4]};
}

std::vector<ListRow> MakeRows(int count) {
    std::vector<ListRow> rows;
    rows.reserve(size_t(count));
    for (int row = 0; row < count; ++row)
        rows.emplace_back(QString::number(row), CellsOf(row));
    return rows;
}

double Utf16MiB() {
    double units = 0;
    for (int row = 0; row < Rows; ++row)
        units += double(CellsOf(row).join(QString()).size());
    return units * 2 / (1024 * 1024);
}

/// Makes each text when it is asked for.
class LazyModel : public QAbstractTableModel {
public:
    int rowCount(const QModelIndex&) const override { return Rows; }
    int columnCount(const QModelIndex&) const override { return Columns; }
    QVariant data(const QModelIndex& index, int role) const override {
        return role == Qt::DisplayRole ? QVariant(CellsOf(index.row()).at(index.column())) : QVariant();
    }
};

std::unique_ptr<CBrenListCtrl> MakeList() {
    static WindowPrompts prompts;
    auto list = std::make_unique<CBrenListCtrl>(prompts);
    list->SetTableKind(TableKind::Record);
    for (int column = 0; column < Columns; ++column)
        list->AddColumn(u"Column"_s, 140);
    return list;
}

void FillWidget(QTableWidget& table) {
    table.setRowCount(Rows);
    table.setColumnCount(Columns);
    for (int row = 0; row < Rows; ++row) {
        const QStringList cells = CellsOf(row);
        for (int column = 0; column < Columns; ++column)
            table.setItem(row, column, new QTableWidgetItem(cells.at(column)));
    }
}

/// Gathers what is painted of a widget.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget* widget) {
        QCoreApplication::processEvents();
        widget->installEventFilter(this);
    }

    QRegion painted;

private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }
};

void ShowAndPaint(QTableView& table) {
    PaintWatch watch(table.viewport());
    table.resize(Window);
    table.show();
    QCoreApplication::processEvents();
    if (watch.painted.isEmpty())
        throw std::runtime_error("a table was not painted");
}

Samples Jump(QTableView& table) {
    std::mt19937 random(7);
    QScrollBar* bar = table.verticalScrollBar();
    std::uniform_int_distribution<int> anywhere(0, bar->maximum());
    Samples samples;
    PaintWatch watch(table.viewport());
    for (int jump = 0; jump < 1000; ++jump) {
        watch.painted = {};
        samples.Add(MillisecondsOf([&] {
            bar->setValue(anywhere(random));
            QCoreApplication::processEvents();
        }));
        if (watch.painted.isEmpty())
            throw std::runtime_error("a jump was not painted");
    }
    return samples;
}

void MeasureFirstPaint(BenchTable& table) {
    ApplyLook(*qApp);
    ShowAndPaint(*MakeList()); // loads fonts and icons
    constexpr int rounds = 5;
    const std::vector<ListRow> rows = MakeRows(Rows);
    std::vector<std::vector<ListRow>> given(rounds + 1, rows); // one more to warm up
    std::vector<std::unique_ptr<CBrenListCtrl>> lists;
    std::vector<std::unique_ptr<QTableView>> views;
    LazyModel lazy;
    const PairSamples paint = MeasurePair(
        rounds,
        [&] {
            lists.push_back(MakeList());
            lists.back()->SetRows(std::move(given[lists.size() - 1]));
            ShowAndPaint(*lists.back());
        },
        [&] {
            views.push_back(std::make_unique<QTableView>());
            views.back()->setModel(&lazy);
            ShowAndPaint(*views.back());
        });
    std::unique_ptr<CBrenListCtrl> list = std::move(lists.back());
    const std::unique_ptr<QTableView> view = std::move(views.back());
    lists.clear();
    views.clear();
    table.Add({.name = "First paint of 1,000,000 rows, beside a lazy table view",
               .unit = "ms",
               .ours = paint.ours.Median(),
               .reference = paint.reference.Median(),
               .maxOurs = 50.0});
    if (list->verticalScrollBar()->maximum() < Rows)
        throw std::runtime_error("the list shows fewer rows");
    table.Add({.name = "Jump in 1,000,000 rows p99, beside a lazy table view",
               .unit = "ms",
               .ours = Jump(*list).Percentile(99),
               .reference = Jump(*view).Percentile(99),
               .maxOurs = 16.0});
    QTableWidget items;
    const double filled = MillisecondsOf([&] {
        FillWidget(items);
        ShowAndPaint(items);
    });
    const double ours = MillisecondsOf([&] {
        list = MakeList();
        list->SetRows(MakeRows(Rows));
        ShowAndPaint(*list);
    });
    table.Add({.name = "Fill and paint 1,000,000 rows, beside a table of items",
               .unit = "ms",
               .ours = ours,
               .reference = filled});
    table.Add({.name = "Jump in 1,000,000 rows p99, beside a table of items",
               .unit = "ms",
               .ours = Jump(*list).Percentile(99),
               .reference = Jump(items).Percentile(99)});
}

void MeasureMemory(BenchTable& table) {
    ApplyLook(*qApp);
    ShowAndPaint(*MakeList());
    const double ours = PeakMemoryOf([] {
        const auto list = MakeList();
        list->SetRows(MakeRows(Rows));
        ShowAndPaint(*list);
    });
    table.Add({.name = "Memory of 1,000,000 rows, beside their UTF-16 text",
               .unit = "MiB",
               .ours = ours,
               .reference = Utf16MiB(),
               .maxRatio = 2.0});
    const double lazy = PeakMemoryOf([] {
        LazyModel model;
        QTableView view;
        view.setModel(&model);
        ShowAndPaint(view);
    });
    table.Add({.name = "Memory of 1,000,000 rows, beside a lazy table view that holds none",
               .unit = "MiB",
               .ours = ours,
               .reference = lazy});
    const double items = PeakMemoryOf([] {
        QTableWidget widget;
        FillWidget(widget);
        ShowAndPaint(widget);
    });
    table.Add({.name = "Memory of 1,000,000 rows, beside a table of items",
               .unit = "MiB",
               .ours = ours,
               .reference = items});
}

double PixelsOf(const QRegion& region) {
    double pixels = 0;
    for (const QRect& rect : region)
        pixels += double(rect.width()) * rect.height();
    return pixels;
}

void MeasureRefresh(BenchTable& table) {
    ApplyLook(*qApp);
    const auto list = MakeList();
    list->SetRows(MakeRows(RefreshedRows));
    ShowAndPaint(*list);
    PaintWatch watch(list->viewport());
    const auto refresh = [&](std::vector<ListRow> rows) {
        watch.painted = {};
        list->SetRows(std::move(rows));
        QCoreApplication::processEvents();
        return watch.painted;
    };
    table.Add({.name = "Repainted by a refresh of 1,000 rows that changes nothing",
               .unit = "pixels",
               .ours = PixelsOf(refresh(MakeRows(RefreshedRows))),
               .maxOurs = 0.0});
    std::vector<ListRow> rows = MakeRows(RefreshedRows);
    rows[3].SetCell(1, u"another"_s);
    const QRegion painted = refresh(rows);
    const QRect cell = list->visualRect(list->model()->index(3, 1));
    if (!painted.contains(cell))
        throw std::runtime_error("the changed cell was not painted");
    table.Add({.name = "Repainted by a refresh that changes one cell, beside the cell",
               .unit = "pixels",
               .ours = PixelsOf(painted),
               .reference = PixelsOf(cell),
               .maxRatio = 1.0});
    Samples samples;
    for (int round = 0; round < 100; ++round) {
        std::vector<ListRow> same = MakeRows(RefreshedRows);
        samples.Add(MillisecondsOf([&] { refresh(std::move(same)); }));
    }
    table.Add({.name = "Refresh of 1,000 rows that changes nothing", .unit = "ms", .ours = samples.Median()});
}

/// Takes note of the clipboard.
class NotedPrompts : public WindowPrompts {
public:
    void SetClipboardText(const QString& text) override { copied = text.size(); }

    qsizetype copied = 0;
};

/// The longest time that the window stands still from a wish on until `holds`.
template <typename Wish, typename Condition>
double LongestStall(Wish wish, Condition holds) {
    double longest = MillisecondsOf(wish);
    QElapsedTimer clock;
    clock.start();
    while (!holds()) {
        if (clock.hasExpired(60'000))
            throw std::runtime_error("a wish of a list was never fulfilled");
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        longest = std::max(longest, MillisecondsOf([] { QCoreApplication::processEvents(); }));
    }
    return std::max(longest, MillisecondsOf([] { QCoreApplication::processEvents(); }));
}

void MeasureStalls(BenchTable& table) {
    ApplyLook(*qApp);
    ThreadReader reader;
    NotedPrompts prompts;
    CBrenListCtrl list(prompts);
    list.WorkOn(reader);
    list.SetTableKind(TableKind::Record);
    list.SetMultiSelection(true);
    for (int column = 0; column < Columns; ++column)
        list.AddColumn(u"Column"_s, 140);
    const RowSet rows = TextRows(MakeRows(Rows));
    const RowSet equal = TextRows(MakeRows(Rows));
    list.AppendRows(rows);
    ShowAndPaint(list);
    const auto rests = [&list] { return !list.IsWorking(); };
    const auto add = [&table](const char* wish, double stall) {
        table.Add({.name = std::string("Longest stall of 1,000,000 rows: ") + wish,
                   .unit = "ms",
                   .ours = stall,
                   .maxOurs = 50.0});
    };
    add("a key in the find bar", LongestStall([&] { list.SetFilter(u"99"_s); }, rests));
    add("the find bar is cleared", LongestStall([&] { list.SetFilter({}); }, rests));
    add("a sort", LongestStall([&] { list.SortByNext(1); }, rests));
    add("the other order", LongestStall([&] { list.SortByNext(1); }, rests));
    add("the order as it was", LongestStall([&] { list.SortByNext(1); }, rests));
    add("an equal refresh", LongestStall([&] { list.SetRows(equal); }, rests));
    const QString last = u"/home/Photos/2026/11/IMG_%1"_s.arg(Rows - 1);
    add("type-ahead to the last row", LongestStall([&] { list.keyboardSearch(last); },
                                                   [&] { return list.currentIndex().row() == Rows - 1; }));
    add("a copy of all", LongestStall(
                             [&] {
                                 list.selectAll();
                                 list.CopySelected();
                             },
                             [&] { return prompts.copied > 0; }));
}

// The memory first: a child process starts with all that its parent holds.
const BenchRegistration Memory("list memory", MeasureMemory);
const BenchRegistration FirstPaint("list paint", MeasureFirstPaint);
const BenchRegistration Stalls("list stalls", MeasureStalls);
const BenchRegistration Refresh("list refresh", MeasureRefresh);

} // namespace
