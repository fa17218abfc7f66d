#include "benchmarks/BenchTable.h"
#include "benchmarks/HeldReader.h"
#include "look/Look.h"
#include "wizard/CheckTreeView.h"
#include "wizard/TreeFindField.h"

#include <QApplication>
#include <QLineEdit>
#include <QPaintEvent>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int KnownNodes = 100'000;
constexpr int LevelOf = 100; ///< nodes a level in the known tree
constexpr int LongLevel = 10'000;

TreeLevel MakeLevel(int count) {
    TreeLevel level;
    for (int row = 0; row < count; ++row) {
        const QString name = u"folder %1"_s.arg(row);
        level.entries.push_back({name, name});
    }
    return level;
}

/// One root with levels of a hundred below it, as many nodes as are wanted.
struct KnownTree {
    KnownTree() : model(reader, page, Lane::Service, nullptr), view(model, &page) {
        model.SetLevel({}, MakeLevel(1));
        Fill({u"folder 0"_s}, 2);
        view.resize(540, 400);
        page.resize(560, 420);
        page.show();
        view.expand(model.index(0, 0));
        view.expand(model.index(0, 0, model.index(0, 0)));
        QCoreApplication::processEvents();
        if (nodes < KnownNodes)
            throw std::runtime_error("the tree is too small");
    }

    void Fill(const QStringList& path, int depth) {
        if (nodes >= KnownNodes)
            return;
        model.SetLevel(path, MakeLevel(LevelOf));
        nodes += LevelOf;
        for (int row = 0; depth > 0 && row < LevelOf; ++row)
            Fill(path + QStringList(u"folder %1"_s.arg(row)), depth - 1);
    }

    HeldReader reader;
    QWidget page;
    CheckTreeModel model;
    CheckTreeView view;
    int nodes = 1;
};

void MeasureKnownTree(BenchTable& table) {
    ApplyLook(*qApp);
    KnownTree tree;
    const QStringList root{u"folder 0"_s};
    // The worst for both: every other node of the last levels has a mark of its own.
    std::vector<QStringList> marked;
    int row = 0;
    for (const auto* node = NextNode(tree.model.Levels().Root()); node; node = NextNode(*node))
        if (node->children.empty() && ++row % 2 == 0)
            marked.push_back(TreeLevels::PathOf(*node));
    Samples ticks;
    Samples walks;
    Samples toggles;
    for (int round = 0; round < 9; ++round) {
        tree.model.SetTicked(root, false);
        CheckChoice choice;
        for (const QStringList& path : marked)
            choice.Set(path, true, [](const QStringList&) { return QStringList(); });
        walks.Add(MillisecondsOf([&] {
            if (WalkTree(choice, tree.model.Levels()).selected.size() != marked.size())
                throw std::runtime_error("the walk left something out");
        }));
        ticks.Add(MillisecondsOf([&] { choice.Set(root, true, {}); }));
        toggles.Add(MillisecondsOf([&] {
            tree.model.SetTicked(root, true);
            QCoreApplication::processEvents();
        }));
    }
    table.Add({.name = "Ticking the root of 100,000 known nodes, and painting it",
               .unit = "ms",
               .ours = toggles.Median(),
               .maxOurs = 20.0});
    table.Add({.name = "Ticking the root above 50,000 ticked nodes",
               .unit = "ms",
               .ours = ticks.Median(),
               .maxOurs = 20.0});
    table.Add({.name = "The walk over 100,000 known nodes, 50,000 of them ticked one by one",
               .unit = "ms",
               .ours = walks.Median(),
               .maxOurs = 20.0});

    TreeFindField find(tree.view, u"Find"_s, TreeFindField::Others::Shown, &tree.page);
    find.findChild<QLineEdit*>()->setText(u"folder 99"_s);
    StallWatch watch;
    watch.Handle([&] { return find.IsLooking(); });
    table.Add({.name = "Longest stall of a find over 100,000 known nodes",
               .unit = "ms",
               .ours = watch.longest,
               .maxOurs = 50.0});
}

void MeasureLongLevel(BenchTable& table) {
    ApplyLook(*qApp);
    Samples shown;
    double longest = 0;
    for (int round = 0; round < 5; ++round) {
        HeldReader reader;
        QWidget page;
        CheckTreeModel model(reader, page, Lane::Service, [](const QStringList& path, std::stop_token) {
            return std::optional(MakeLevel(path.isEmpty() ? 1 : LongLevel));
        });
        CheckTreeView view(model, &page);
        view.resize(540, 400);
        page.resize(560, 420);
        page.show();
        model.List();
        reader.Work();
        reader.Answer();
        view.expand(model.index(0, 0));
        QCoreApplication::processEvents();
        reader.Work();
        StallWatch watch;
        shown.Add(MillisecondsOf([&] {
            longest = std::max(longest, MillisecondsOf([&] { reader.Answer(); }));
            for (int turn = 0; turn < 3; ++turn)
                watch.Handle([once = true]() mutable { return std::exchange(once, false); });
        }));
        longest = std::max(longest, watch.longest);
        if (view.indexAt(QPoint(60, 200)).row() < 5)
            throw std::runtime_error("the level is not on screen");
    }
    table.Add({.name = "A level of 10,000 nodes on screen after its answer",
               .unit = "ms",
               .ours = shown.Median(),
               .maxOurs = 200.0});
    table.Add({.name = "Longest stall meanwhile", .unit = "ms", .ours = longest, .maxOurs = 50.0});
}

const BenchRegistration Known("check tree", MeasureKnownTree);
const BenchRegistration Long("check tree level", MeasureLongLevel);

} // namespace
