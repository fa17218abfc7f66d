#include "lanes/PageLoader.h"
#include "support/SteppingReader.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTemporaryDir>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString Unread = u"The data could not be read."_s;

/// An environment variable as it is for a test.
struct EnvironmentChange {
    EnvironmentChange(const char* variable, const QByteArray& value)
        : name(variable), before(qgetenv(variable)) {
        qputenv(name, value);
    }
    ~EnvironmentChange() { before.isNull() ? qunsetenv(name) : qputenv(name, before); }
    EnvironmentChange(const EnvironmentChange&) = delete;
    EnvironmentChange& operator=(const EnvironmentChange&) = delete;

    const char* name;
    QByteArray before;
};

/// A page that notes what it is given to apply.
class RecordingPage : public QWidget {
public:
    explicit RecordingPage(Reader& reader) : loader(reader, *this) { show(); }

    void Load(int number, Lane lane = Lane::Service) {
        loader.Load(
            lane, [number](std::stop_token) { return number; },
            [this](const Loaded<int>& loaded) { Note(loaded); });
    }

    void Note(const Loaded<int>& loaded) {
        const bool cancelled = loaded.outcome == LoadOutcome::Cancelled;
        applied.append(loaded ? QString::number(*loaded) : cancelled ? u"cancelled"_s : loaded.why);
        if (onApply)
            onApply();
    }

    PageLoader loader;
    QStringList applied;
    std::function<void()> onApply;
};

} // namespace

class PageLoaderTest : public QObject {
    Q_OBJECT

private slots:
    void eachFetchEndsInOneApply() {
        const QTemporaryDir home;
        const EnvironmentChange change("BREN_HOME", home.path().toUtf8());
        SteppingReader reader;
        RecordingPage page(reader);
        const auto note = [&page](const Loaded<int>& loaded) { page.Note(loaded); };

        for (const std::optional<int> read : {std::optional(7), std::optional<int>()}) {
            page.loader.Load(
                Lane::Service, [read](std::stop_token) { return read; }, note);
            reader.StepAll();
        }
        for (const char* what : {"torn", "torn", "worn"}) {
            page.loader.Load(
                Lane::Service, [what](std::stop_token) -> int { throw std::runtime_error(what); }, note);
            reader.StepAll();
        }
        page.Load(8);
        page.loader.Cancel();
        reader.StepAll();
        page.Load(9);
        reader.Work(Lane::Service);
        page.loader.Cancel();
        reader.Finish();

        QCOMPARE(page.applied, (QStringList{u"7"_s, Unread, Unread.chopped(1) + u": torn"_s,
                                            Unread.chopped(1) + u": torn"_s, Unread.chopped(1) + u": worn"_s,
                                            u"cancelled"_s, u"cancelled"_s}));
        QVERIFY(!page.loader.IsReading());
        QFile log(home.filePath(u"logging/BTaskMMC.log"_s));
        QVERIFY(log.open(QIODevice::ReadOnly));
        const QByteArray traced = log.readAll();
        QCOMPARE(traced.count("ERROR"), 2); // of three, two of which were the same
        QVERIFY(traced.contains("torn") && traced.contains("worn"));
    }

    void theNewestReadWins() {
        SteppingReader reader;
        RecordingPage page(reader);
        page.Load(1);
        page.Load(2);
        page.Load(3);
        reader.StepAll();
        page.applied.removeAll(u"cancelled"_s);
        QCOMPARE(page.applied, QStringList{u"3"_s});
    }

    void anOlderAnswerMayComeLast() {
        SteppingReader reader;
        RecordingPage page(reader);
        page.Load(1, Lane::Service);
        reader.Work(Lane::Service);
        page.Load(2, Lane::Databases);
        reader.Work(Lane::Databases);
        reader.Finish(1);
        reader.Finish(0);
        QCOMPARE(page.applied, (QStringList{u"2"_s, u"cancelled"_s}));
    }

    void nothingIsAppliedToAClosedPage() {
        SteppingReader reader;
        bool sent = false;
        bool read = false;
        bool finished = false;
        bool applied = false;
        {
            RecordingPage page(reader);
            const auto apply = [&applied](const Loaded<bool>&) { applied = true; };
            const auto set = [](bool& flag) { return [&flag](std::stop_token) { return flag = true; }; };
            page.loader.Command(Lane::Service, set(sent), apply);
            page.loader.Load(Lane::Service, set(read), apply);
            page.loader.Load(Lane::Databases, set(finished), apply);
            reader.Work(Lane::Databases);
        }
        reader.StepAll();
        reader.Finish();
        QVERIFY(sent && finished && !read && !applied);
    }

    void aPageMayCloseItselfInAnApply() {
        SteppingReader reader;
        auto page = std::make_unique<RecordingPage>(reader);
        page->loader.StartTimer(1h, [] {});
        page->onApply = [&page] { page.reset(); };
        page->Load(1);
        reader.StepAll();
        QVERIFY(!page);
    }

    void aPageMayReloadInAnApply() {
        SteppingReader reader;
        RecordingPage page(reader);
        page.loader.StartTimer(1h, [] {});
        page.onApply = [&page] {
            if (page.applied.size() < 3)
                page.Load(static_cast<int>(page.applied.size()) + 1);
        };
        page.Load(1);
        reader.Step(Lane::Service);
        QVERIFY(page.loader.IsReading());
        QVERIFY(!page.loader.IsTimerRunning());
        reader.StepAll();
        QCOMPARE(page.applied, (QStringList{u"1"_s, u"2"_s, u"3"_s}));
        QVERIFY(page.loader.IsTimerRunning());
    }

    void commandsAndThePageInFrontOvertake() {
        SteppingReader reader;
        QStringList order;
        RecordingPage hidden(reader);
        RecordingPage front(reader);
        const auto note = [&order](const char* name) {
            return [&order, name](const Loaded<bool>&) { order.append(QLatin1String(name)); };
        };
        const auto fetch = [](std::stop_token) { return true; };
        hidden.hide();
        hidden.loader.Load(Lane::Service, fetch, note("hidden"));
        front.loader.Load(Lane::Service, fetch, note("front"));
        hidden.loader.Command(Lane::Service, fetch, note("first command"));
        front.loader.Command(Lane::Service, fetch, note("second command"));
        reader.StepAll();
        QCOMPARE(order.join(u','), u"first command,second command,front,hidden"_s);
    }

    void readsEach_data() {
        const Columns<QStringList, int, QString> row("items", "failsAt", "brought");
        row("none", {}, -1, "command");
        row("all", {u"a"_s, u"b"_s, u"c"_s}, -1, "a command b c");
        row("the first fails", {u"a"_s, u"b"_s}, 0, "command");
        row("a later one fails", {u"a"_s, u"b"_s, u"c"_s}, 1, "a command");
    }

    /// Commands come between two items, and none is asked for after a failure.
    void readsEach() {
        const auto [items, failsAt] = Fetched<QStringList, int>();
        SteppingReader reader;
        RecordingPage page(reader);
        QStringList brought;
        page.loader.LoadEach(
            Lane::Service, std::vector<QString>(items.begin(), items.end()),
            [failing = items.value(failsAt), &brought](const QString& item, std::stop_token) {
                if (item == failing && !failing.isEmpty())
                    return std::optional<QString>();
                brought.append(item);
                return std::optional(item);
            },
            [&](const Loaded<std::vector<QString>>& loaded) {
                page.applied.append(loaded ? QString::number(loaded->size()) : u"none"_s);
            });
        QVERIFY(reader.Work(Lane::Service));
        page.loader.Command(
            Lane::Service,
            [&brought](std::stop_token) {
                brought.append(u"command"_s);
                return true;
            },
            [](const Loaded<bool>&) {});
        reader.Finish();
        reader.StepAll();
        QTEST(brought.join(u' '), "brought");
        QCOMPARE(page.applied, QStringList{QString::number(failsAt < 0 ? items.size() : failsAt)});
        QVERIFY(!page.loader.IsReading());
    }

    void aCancelledBatchEndsOnce() {
        SteppingReader reader;
        RecordingPage page(reader);
        page.loader.LoadEach(
            Lane::Service, std::vector{1, 2, 3}, [](int item, std::stop_token) { return item; },
            [&page](const Loaded<std::vector<int>>& loaded) {
                page.applied.append(loaded ? u"values"_s : u"cancelled"_s);
            });
        reader.Step(Lane::Service);
        page.Load(4);
        reader.StepAll();
        QCOMPARE(page.applied, (QStringList{u"cancelled"_s, u"4"_s}));
    }

    void commandsAreNotCancelled() {
        SteppingReader reader;
        RecordingPage page(reader);
        for (int number : {1, 2})
            page.loader.Command(
                Lane::Service, [number](std::stop_token) { return number; },
                [&page](const Loaded<int>& loaded) { page.Note(loaded); });
        page.loader.Cancel();
        page.Load(3);
        reader.StepAll();
        QCOMPARE(page.applied, (QStringList{u"1"_s, u"2"_s, u"3"_s}));
    }

    void theTimerRestsDuringARead() {
        SteppingReader reader;
        RecordingPage page(reader);
        page.Load(1);
        page.loader.StartTimer(0ms, [&page] { page.Load(2); });
        QVERIFY(!page.loader.IsTimerRunning());
        reader.StepAll();
        QVERIFY(page.loader.IsTimerRunning());

        QTRY_VERIFY(page.loader.IsReading());
        QVERIFY(!page.loader.IsTimerRunning());
        page.loader.Cancel();
        QVERIFY(!page.loader.IsTimerRunning());
        reader.StepAll();
        QVERIFY(page.loader.IsTimerRunning());

        page.loader.StopTimer();
        page.Load(3);
        reader.StepAll();
        QVERIFY(!page.loader.IsTimerRunning());
    }

    void restsWhenThePageIsHidden() {
        SteppingReader reader;
        RecordingPage page(reader);
        page.loader.StartTimer(1h, [] {});
        page.Load(1);
        page.hide();
        reader.StepAll();
        QCOMPARE(page.applied, QStringList{u"cancelled"_s});
        QVERIFY(!page.loader.IsTimerRunning());

        int refreshes = 0;
        page.loader.StartTimer(0ms, [&refreshes] { ++refreshes; });
        QTRY_VERIFY(!page.loader.IsTimerRunning());
        QCOMPARE(refreshes, 0);
    }

    void theTimerGoesOnWhenARefreshReadsNothing() {
        SteppingReader reader;
        RecordingPage page(reader);
        int refreshes = 0;
        page.loader.StartTimer(0ms, [&] {
            if (++refreshes == 3)
                page.loader.StopTimer();
        });
        QTRY_COMPARE(refreshes, 3);
        QVERIFY(!page.loader.IsTimerRunning());
    }
};

BTASK_TEST(PageLoaderTest);
#include "PageLoaderTest.moc"
