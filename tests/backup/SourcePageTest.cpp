// Labels: threads
#include "backup/SourcePage.h"
#include "lanes/ThreadReader.h"
#include "support/ConsoleFixture.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"
#include "wizard/CheckTreeView.h"

#include <QTemporaryDir>

#include <atomic>
#include <filesystem>

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

/// A home folder with what a person may have in one.
struct HomeTree {
    HomeTree() {
        qputenv("HOME", dir.path().toUtf8());
        for (const char* folder : {"Documents/Letters", "Documents/Plans/Old", "Photos/Part 2",
                                   "Photos/Part 10", "odd/it's \"x\"\xE2\x80\xAE", "odd/line\nfeed/below",
                                   "odd/ta\tb", "odd/caf\xE9", "odd/caf\xE8", "odd/ umlaut \xC3\xA4 "})
            fs::create_directories(Path() / folder);
        fs::create_directory_symlink("../Documents", Path() / "odd/out");
        fs::create_directory_symlink("..", Path() / "Photos/up");
        fs::create_symlink("nowhere", Path() / "Photos/broken");
    }
    ~HomeTree() {
        before.isNull() ? qunsetenv("HOME") : qputenv("HOME", before);
        for (const auto& folder : fs::directory_iterator(Path())) // the framework's way stops at odd names
            fs::remove_all(folder);
    }

    fs::path Path() const { return dir.path().toStdString(); }
    QString Text(const char* below) const { return dir.path() + u'/' + QString::fromUtf8(below); }

    QTemporaryDir dir;
    QByteArray before = qgetenv("HOME");
};

/// The wizard with the page, opened; nothing hangs but what a test makes hang.
struct OpenPage {
    explicit OpenPage(const LocalFolders& folders = {})
        : page(new CSourcePage(fixture.console, draft, folders)), rider(MakeSheet(), fixture.reader) {
        rider.Ride(u"steps"_s);
    }

    CBrenPropertySheet* MakeSheet() {
        auto* sheet = new CBrenPropertySheet(fixture.reader, fixture.prompts, u"Backup"_s);
        sheet->AddPage(page);
        sheet->AddPage(new WizardPage(u"Last"_s, {}));
        return sheet;
    }

    CheckTreeModel& Tree() const { return rider.Sheet()->findChild<CheckTreeView*>()->Tree(); }
    /// Opens the levels on the way; the first key is that of the home folder.
    QModelIndex Open(const QStringList& names) {
        QStringList keys{home.dir.path()};
        QModelIndex index = Index(keys);
        for (const QString& name : names) {
            List(index);
            index = Index(keys += name);
        }
        return index;
    }
    void List(const QModelIndex& index) {
        Tree().List(index);
        fixture.reader.StepAll();
    }
    QModelIndex Index(const QStringList& keys) const {
        const TreeLevels::Node* node = Tree().Levels().Find(keys);
        return node ? Tree().IndexOf(*node) : QModelIndex();
    }

    HomeTree home;
    ConsoleFixture<> fixture;
    std::shared_ptr<BackupDraft> draft = std::make_shared<BackupDraft>();
    CSourcePage* page;
    WizardRider rider;
};

/// "name", "name (note)", and in brackets where it cannot be ticked.
QStringList RowsBelow(const CheckTreeModel& tree, const QModelIndex& index) {
    QStringList rows;
    for (int row = 0; row < tree.rowCount(index); ++row) {
        const QModelIndex child = tree.index(row, 0, index);
        const QString note = child.data(CheckTreeModel::NoteRole).toString();
        QString text = child.data().toString() + (note.isEmpty() ? QString() : u" ("_s + note + u')');
        if (!child.data(Qt::CheckStateRole).isValid())
            text = u'[' + text + u']';
        rows.append(tree.hasChildren(child) ? text : text + u" shut"_s);
    }
    return rows;
}

} // namespace

class SourcePageTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (QSysInfo::productType() == u"windows")
            QSKIP("links and odd names are made in another way there");
    }

    void showsTheFoldersAsTheyAre() {
        OpenPage open;
        const QStringList first = RowsBelow(open.Tree(), {});
        QCOMPARE(first.first(2), QStringList({u"Home"_s, u"Documents"_s}));
        QVERIFY(first.contains(u"Local Disk (/)"_s));
        const QModelIndex photos = open.Open({u"Photos"_s});
        open.List(photos);
        const QString real = QString::fromStdString(fs::canonical(open.home.Path()).string());
        QCOMPARE(RowsBelow(open.Tree(), photos),
                 QStringList({u"Part 2"_s, u"Part 10"_s,
                              u"up (link to "_s + real + u" \u00B7 leads back to where it stands) shut"_s}));
        const QModelIndex odd = open.Open({u"odd"_s});
        open.List(odd);
        QStringList rows = RowsBelow(open.Tree(), odd);
        const QString cut = u"taken only with the folder above)] shut"_s;
        for (const QString& row :
             {u" umlaut \u00E4 "_s, u"out (link to "_s + real + u"/Documents)"_s,
              u"[ta\tb (the name holds a tab: "_s + cut, u"[line\nfeed (the name holds a line feed: "_s + cut,
              u"[caf\uFFFD (the name is no valid text: "_s + cut,
              u"[caf\uFFFD (the name is no valid text: "_s + cut})
            QVERIFY2(rows.removeOne(row), qPrintable(row + u" is not in "_s + rows.join(u" | "_s)));
        QCOMPARE(rows.size(), 1);
        QVERIFY(rows.first().contains(u"it's \"x\"\u202E"_s));
    }

    void takesWhatIsTicked_data() {
        const Columns<QString, QString, QString, QString> row("ticks", "sources", "exclusions", "line");
        row("+Documents", "Documents", "", "1 folder.  Documents");
        row("+Documents -Documents/Plans", "Documents", "Documents/Plans",
            "1 folder, 1 left out.  Documents  \u00B7  without Plans");
        row("+Photos +Documents -Documents/Plans +Documents/Plans/Old", "Documents, Photos", "",
            "2 folders.  Documents, Photos");
        row("+odd/out/Letters", "odd/out/Letters", "", "1 folder.  Letters");
    }

    void takesWhatIsTicked() {
        const auto [ticks] = Fetched<QString>();
        OpenPage open;
        for (const QString& tick : ticks.split(u' ')) {
            const QModelIndex index = open.Open(tick.mid(1).split(u'/'));
            QVERIFY2(index.isValid(), qPrintable(tick));
            open.Tree().Toggle(index);
            QCOMPARE(index.data(Qt::CheckStateRole).toInt(),
                     int(tick.front() == u'+' ? Qt::Checked : Qt::Unchecked));
        }
        QVERIFY(open.rider.Ride(u"Next | steps | page Last"_s));
        const auto below = [&open](QStringList paths) {
            return paths.replaceInStrings(open.home.dir.path() + u'/', QString()).join(u", "_s);
        };
        QTEST(below(open.draft->sources), "sources");
        QTEST(below(open.draft->exclusions), "exclusions");
    }

    void staysWithoutAFolder() {
        OpenPage open;
        open.fixture.prompts.ExpectMessage(u"Please select at least one folder to backup!"_s);
        QVERIFY(
            open.rider.Ride(u"Next | says Please select at least one folder to backup! | focus Folders"_s));
        open.Tree().Toggle(open.Open({u"Photos"_s, u"Part 2"_s}));
        open.Tree().Toggle(
            open.Index({open.home.Text("Documents")})); // chosen as a folder of its own as well
        open.Tree().Toggle(open.Open({u"Documents"_s}));
        open.Tree().Toggle(open.Open({u"Documents"_s, u"Plans"_s}));
        QVERIFY(open.rider.Ride(
            u"Next | says \"%1\" is ticked in one place of the tree and left out in another one."_s.arg(
                open.home.Text("Documents/Plans"))));
        open.Tree().Toggle(open.Index({open.home.dir.path(), u"Documents"_s, u"Plans"_s}));
        QVERIFY(open.rider.Ride(u"Next | steps | page Last"_s));
        QCOMPARE(open.draft->sources,
                 QStringList({open.home.Text("Documents"), open.home.Text("Photos/Part 2")}));
    }

    void tellsOfAFolderThatHasGone() {
        OpenPage open;
        const QModelIndex plans = open.Open({u"Documents"_s, u"Plans"_s});
        open.Tree().Toggle(plans);
        fs::remove_all(open.home.Path() / "Documents/Plans");
        const QString gone =
            u"The folder \"%1\" is not there any more."_s.arg(open.home.Text("Documents/Plans"));
        QVERIFY(open.rider.Ride(u"Next | steps | says "_s + gone));
        open.List(plans);
        QCOMPARE(RowsBelow(open.Tree(), plans).first(),
                 u"[This folder is not there any more (Try again)] shut"_s);
        open.Tree().ListAgain(open.Open({u"Documents"_s}));
        open.fixture.reader.StepAll();
        QVERIFY(open.rider.Ride(u"Next | steps | says "_s + gone + u" It is not ticked any more."_s));
        open.Tree().Toggle(open.Open({u"Documents"_s}));
        QVERIFY(open.rider.Ride(u"Next | steps | page Last"_s));
    }

    /// With the program's own threads: one folder never answers, and all else goes on.
    void aDeadDriveHoldsNothingUp() {
        HomeTree home;
        // Shared with the threads that are left.
        const auto hung = std::make_shared<std::atomic<int>>(0);
        const auto released = std::make_shared<std::atomic<bool>>(false);
        LocalFolders folders;
        folders.read = [hung, released, path = home.Path()](const fs::path& folder, auto detail,
                                                            const auto& each) {
            if (folder == path / "odd") {
                ++*hung;
                released->wait(false);
                return platform::FolderOutcome::Unready;
            }
            return platform::ReadFolder(folder, detail, each);
        };
        folders.patience = std::chrono::milliseconds(1500);
        {
            ThreadReader reader;
            QWidget page;
            CheckTreeModel tree(reader, page, Lane::Apart, ListLocalFolders(folders));
            const auto find = [&tree](const QStringList& keys) {
                const TreeLevels::Node* node = tree.Levels().Find(keys);
                return node ? tree.IndexOf(*node) : QModelIndex();
            };
            const auto list = [&tree, &find](const QStringList& keys) {
                QTRY_VERIFY(find(keys).isValid());
                tree.List(find(keys));
            };
            tree.List();
            list({home.dir.path()});
            list({home.dir.path(), u"odd"_s});
            QTRY_COMPARE(hung->load(), 1);
            QVERIFY(find({home.dir.path(), u"odd"_s}).data().toString().endsWith(u"(Loading...)"_s));
            list({home.dir.path(), u"Photos"_s});
            QTRY_VERIFY(find({home.dir.path(), u"Photos"_s, u"Part 2"_s}).isValid());
            bool answered = false;
            reader.Submit({Lane::Service,
                           [] { return ReadPriority::Front; },
                           {},
                           [](const auto&) {},
                           [&answered] { answered = true; }});
            QTRY_VERIFY(answered);
            const QModelIndex odd = find({home.dir.path(), u"odd"_s});
            QTRY_COMPARE(RowsBelow(tree, odd),
                         QStringList(u"[The drive does not answer (Try again)] shut"_s));
            tree.List(odd);
            QTRY_COMPARE(hung->load(), 2);
        } // goes at once, though it is being listed again
        *released = true;
        released->notify_all();
    }
};

BTASK_TEST(SourcePageTest);
#include "SourcePageTest.moc"
