#include "support/SteppingReader.h"
#include "support/TestMain.h"
#include "wizard/CheckTreeView.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <map>
#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The whole tree, as the service would list it, and what is ticked of it by the rule of thumb: every node
/// that is known has a tick of its own.
class BruteForce {
public:
    using Path = QStringList;

    explicit BruteForce(std::mt19937& random) { Grow({}, 3, random); }

    TreeLevel LevelOf(const Path& path) const {
        TreeLevel level;
        for (const QString& key : m_below.at(path))
            level.entries.push_back({key, key.toUpper()});
        return level;
    }

    void List(const Path& path) {
        for (const QString& key : m_below.at(path))
            m_ticks.emplace(path + Path(key), IsTicked(path));
    }

    /// Ticks or unticks all that is known below.
    void Set(const Path& path, bool ticked) {
        if (ticked && !path.isEmpty())
            TickWayUp(path);
        for (auto& [known, tick] : m_ticks)
            if (IsAtOrBelow(known, path))
                tick = ticked;
    }

    bool IsTicked(const Path& path) const {
        const auto known = m_ticks.find(path);
        return known != m_ticks.end() && known->second;
    }

    const std::map<Path, bool>& Known() const { return m_ticks; }

    static bool IsAtOrBelow(const Path& path, const Path& above) {
        return path.size() >= above.size() && path.first(above.size()) == above;
    }

private:
    /// Up to the first ticked node, if there is one: the nodes between become ticked, nothing else does.
    void TickWayUp(const Path& path) {
        Path ticked = path;
        while (!ticked.isEmpty() && !IsTicked(ticked))
            ticked.removeLast();
        if (ticked.isEmpty())
            return;
        for (Path way = path; way.size() > ticked.size(); way.removeLast())
            m_ticks[way] = true;
    }

    void Grow(const Path& path, int depth, std::mt19937& random) {
        static const QStringList names{u"a"_s, u"a b"_s, u"a-"_s, u"ab"_s, u"a/b"_s};
        QStringList& level = m_below[path];
        for (const QString& name : names)
            if (depth > 0 && random() % 3 != 0)
                level.append(name);
        std::shuffle(level.begin(), level.end(), random);
        for (const QString& name : level)
            Grow(path + Path(name), depth - 1, random);
    }

    std::map<Path, QStringList> m_below;
    std::map<Path, bool> m_ticks;
};

bool IsCovered(const TreeWalk& walk, const QStringList& path) {
    const auto holds = [&path](const WalkedNode& node) { return BruteForce::IsAtOrBelow(path, node.path); };
    return std::any_of(walk.selected.begin(), walk.selected.end(), holds) &&
           std::none_of(walk.excluded.begin(), walk.excluded.end(), holds);
}

QStringList Paths(const std::vector<WalkedNode>& nodes) {
    QStringList paths;
    for (const WalkedNode& node : nodes)
        paths.append(node.path.join(u'/'));
    return paths;
}

} // namespace

class CheckTreeTest : public QObject {
    Q_OBJECT

private slots:
    void isWhatTheWalkSays() {
        for (unsigned seed = 1; seed <= 300; ++seed) {
            std::mt19937 random(seed);
            BruteForce tree(random);
            SteppingReader reader;
            QWidget page;
            CheckTreeModel model(reader, page, Lane::Service,
                                 [&tree](const QStringList& path, std::stop_token) {
                                     return std::optional(tree.LevelOf(path));
                                 });
            connect(&model, &CheckTreeModel::Listed, this,
                    [&tree](const QStringList& path) { tree.List(path); });
            model.List();
            reader.StepAll();
            int held = 0;
            for (int step = 0; step < 60; ++step) {
                std::vector<QStringList> known;
                for (const auto& [path, ticked] : tree.Known())
                    known.push_back(path);
                if (known.empty())
                    break;
                const QStringList path = known[random() % known.size()];
                const QModelIndex index = model.IndexOf(*model.Levels().Find(path));
                switch (random() % 5) {
                case 0:
                    model.List(index); // asked now, answered later and in any order
                    break;
                case 1:
                    held += reader.Work(Lane::Service) ? 1 : 0;
                    break;
                case 2:
                    if (held > 0)
                        reader.Finish(random() % unsigned(held--));
                    break;
                default:
                    tree.Set(path, index.data(Qt::CheckStateRole).toInt() != Qt::Checked);
                    model.Toggle(index);
                }
                Compare(model, tree, seed);
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }

    void walksInTheOrderShown_data() {
        const Columns<QString, QString, QString, QString> row("ticks", "selected", "excluded", "notes");
        row("", "", "", "");
        row("+z", "z", "", "");
        row("+a/x +z", "z, a/x", "", "a: 1 ticked below");
        row("+a -a/x", "a", "a/x", "a: all but 1; a/x: left out");
        row("+a -a/x -a/y", "a", "a/x, a/y", "a: all but 2; a/x: left out; a/y: left out");
        row("+a -a/x +a", "a", "", "");
        row("+a -a/x +a/x/1", "a", "a/x/2", "a: all but 1; a/x: all but 1; a/x/2: left out");
        row("+gone/below +z +a/gone", "z, a/gone, gone/below", "", "a: 1 ticked below");
    }

    void walksInTheOrderShown() {
        const auto [ticks] = Fetched<QString>();
        Opened tree;
        for (const QString& tick : ticks.split(u' ', Qt::SkipEmptyParts))
            tree.model.SetTicked(tick.mid(1).split(u'/'), tick.startsWith(u'+'));
        const TreeWalk walk = tree.model.Walk();
        QTEST(Paths(walk.selected).join(u", "_s), "selected");
        QTEST(Paths(walk.excluded).join(u", "_s), "excluded");
        QStringList notes;
        const TreeLevels& levels = tree.model.Levels();
        for (const auto* node = NextNode(levels.Root()); node; node = NextNode(*node)) {
            const QString note = tree.model.IndexOf(*node).data(CheckTreeModel::NoteRole).toString();
            if (!note.isEmpty())
                notes.append(TreeLevels::PathOf(*node).join(u'/') + u": "_s + note);
        }
        QTEST(notes.join(u"; "_s), "notes");
        QVERIFY(walk.selected.empty() || (walk.selected.back().node == nullptr) == ticks.contains(u"gone"_s));
    }

    void aLevelIsListedOnceAndSaysSo() {
        Opened tree(false);
        tree.view.show();
        QTest::keyClick(&tree.view, Qt::Key_Down); // a
        const QModelIndex a = tree.model.index(1, 0);
        QCOMPARE(tree.view.currentIndex(), a);
        QTest::keyClick(&tree.view, Qt::Key_Right);
        QCOMPARE(a.data().toString(), u"A (Loading...)"_s);
        QTest::keyClick(&tree.view, Qt::Key_Space); // ticked while it is listed
        tree.reader.StepAll();
        QCOMPARE(a.data().toString(), u"A"_s);
        QCOMPARE(tree.model.rowCount(a), 2);
        QCOMPARE(tree.model.index(0, 0, a).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Return, Qt::Key_Return})
            QTest::keyClick(&tree.view, key);
        tree.reader.StepAll();
        QCOMPARE(tree.asked.count(u"a"_s), 1);
        QTest::keyClick(&tree.view, Qt::Key_F5);
        QVERIFY(tree.view.isExpanded(a));
        tree.reader.StepAll();
        QCOMPARE(tree.asked.count(u"a"_s), 2);
        QCOMPARE(Paths(tree.model.Walk().selected), QStringList(u"a"_s));
    }

    void aFailedLevelCanBeTriedAgain_data() {
        const Columns<QString, int> row("how", "key");
        row("Enter", Qt::Key_Return);
        row("Space", Qt::Key_Space);
        row("a click", 0);
    }

    void aFailedLevelCanBeTriedAgain() {
        const auto [how, key] = Fetched<QString, int>();
        Opened tree(false);
        tree.view.resize(400, 300);
        tree.view.show();
        tree.fails = u"a"_s;
        const QModelIndex a = tree.model.index(1, 0);
        tree.view.expand(a);
        tree.reader.StepAll();
        const QModelIndex row = tree.model.index(0, 0, a);
        QCOMPARE(row.data().toString(), u"No right to list this folder"_s);
        QVERIFY(!(row.flags() & Qt::ItemIsUserCheckable));
        QCOMPARE(row.data(Qt::AccessibleTextRole).toString(), u"No right to list this folder, Try again"_s);
        tree.fails.clear();
        if (key == 0) {
            QTest::mouseClick(tree.view.viewport(), Qt::LeftButton, {}, tree.view.visualRect(row).center());
        } else {
            tree.view.setCurrentIndex(row);
            QTest::keyClick(&tree.view, static_cast<Qt::Key>(key));
        }
        tree.reader.StepAll();
        QCOMPARE(tree.model.rowCount(a), 2);
        QCOMPARE(tree.asked.count(u"a"_s), 2);
        QVERIFY(tree.model.Walk().selected.empty());
    }

    void aClickOnTheBoxTicks() {
        Opened tree;
        tree.view.resize(400, 300);
        tree.view.show();
        const QModelIndex z = tree.model.index(0, 0);
        QStyleOptionViewItem option;
        option.initFrom(&tree.view);
        option.rect = tree.view.visualRect(z);
        option.features = QStyleOptionViewItem::HasCheckIndicator;
        const QRect box =
            tree.view.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &tree.view);
        const QSignalSpy edits(&tree.model, &CheckTreeModel::ChoiceEdited);
        for (int time = 1; time <= 3; ++time) {
            QTest::mouseClick(tree.view.viewport(), Qt::LeftButton, {}, box.center());
            QCOMPARE(edits.count(), time);
            QCOMPARE(z.data(Qt::CheckStateRole).toInt(), int(time % 2 ? Qt::Checked : Qt::Unchecked));
        }
    }

    void aPickerHasNoBoxes() {
        Opened tree(true, CheckTreeModel::Boxes::None);
        const QModelIndex z = tree.model.index(0, 0);
        QVERIFY(!z.data(Qt::CheckStateRole).isValid());
        QTest::keyClick(&tree.view, Qt::Key_Space);
        QVERIFY(tree.model.Choice().IsEmpty());
    }

    void whatIsForgottenIsNotHeardOf() {
        Opened tree;
        const QModelIndex a = tree.model.index(1, 0);
        const QModelIndex x = tree.model.index(0, 0, a);
        tree.model.ListAgain(x);
        QVERIFY(tree.reader.Work(Lane::Service));
        tree.model.ListAgain(a);
        QVERIFY(tree.reader.Work(Lane::Service));
        tree.reader.Finish(1); // a is replaced, and x with it
        tree.reader.Finish();
        QCOMPARE(tree.model.rowCount(a), 2);
        QCOMPARE(tree.model.rowCount(tree.model.index(0, 0, a)), 0);
    }

private:
    /// z, a (x (1, 2), y); all of it listed, or the first level only.
    struct Opened {
        explicit Opened(bool all = true, CheckTreeModel::Boxes boxes = CheckTreeModel::Boxes::Checks)
            : model(
                  reader, page, Lane::Service,
                  [this](const QStringList& path, std::stop_token) { return LevelOf(path); }, boxes),
              tester(&model), view(model, &page) {
            model.List();
            reader.StepAll();
            if (!all)
                return;
            for (const QString& path : {u"a"_s, u"a/x"_s}) {
                model.List(model.IndexOf(*model.Levels().Find(path.split(u'/'))));
                reader.StepAll();
            }
        }

        std::optional<TreeLevel> LevelOf(const QStringList& path) {
            const QString joined = path.join(u'/');
            asked.append(joined);
            if (!fails.isEmpty() && joined == fails)
                return TreeLevel{{}, u"No right to list this folder"_s};
            const std::map<QString, QString> levels{{{}, u"za"_s}, {u"a"_s, u"xy"_s}, {u"a/x"_s, u"12"_s}};
            const auto level = levels.find(joined);
            TreeLevel listed;
            if (level != levels.end())
                for (const QChar key : level->second)
                    listed.entries.push_back({key, QString(key).toUpper()});
            return listed;
        }

        SteppingReader reader;
        QWidget page;
        QStringList asked;
        QString fails;
        CheckTreeModel model;
        QAbstractItemModelTester tester;
        CheckTreeView view;
    };

    static void Compare(const CheckTreeModel& model, const BruteForce& tree, unsigned seed) {
        const TreeWalk walk = model.Walk();
        for (const auto& [path, ticked] : tree.Known()) {
            const QString where = u"seed %1 at %2"_s.arg(seed).arg(path.join(u'|'));
            QVERIFY2(model.Choice().StateOf(path).ticked == ticked, qPrintable(where));
            QVERIFY2(IsCovered(walk, path) == ticked, qPrintable(where));
        }
    }
};

BTASK_TEST(CheckTreeTest);
#include "CheckTreeTest.moc"
