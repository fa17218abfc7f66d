// Labels: threads painting
#include "list/RecordPanel.h"
#include "lanes/ThreadReader.h"
#include "list/BrenListCtrl.h"
#include "list/RecordTable.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"

#include <condition_variable>
#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A source whose rows come one by one as the test lets them come. Each read begins with its first row.
class Tap {
public:
    /// Lets `count` rows through in all; more than the source has: its reads end.
    void LetCome(int count) {
        const std::lock_guard lock(m_mutex);
        m_let = count;
        m_changed.notify_all();
    }
    /// Of the reads that follow, which end with `end` once all their rows have come.
    void SetRows(const QString& name, int count, const ReadResult& end = {}) {
        const std::lock_guard lock(m_mutex);
        m_name = name;
        m_count = count;
        m_end = end;
    }

    std::atomic<int> looks = 0; ///< at the ids of rows

    ReadResult Read(RecordStream<QString>& rows, std::stop_token stop) {
        std::unique_lock lock(m_mutex);
        for (int row = 0;; ++row) {
            if (!m_changed.wait(lock, stop, [&] { return m_let > row; }))
                return {ReadOutcome::Stopped, {}};
            if (row == m_count && m_end.detail == u"thrown"_s)
                throw std::runtime_error("thrown");
            if (row == m_count)
                return m_end;
            rows.Put(m_name + QString::number(row));
        }
    }

private:
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    QString m_name = u"a"_s;
    int m_count = 10;
    int m_let = 0;
    ReadResult m_end;
};

constexpr int Many = 6000; ///< more than a list takes in at once
constexpr int Everything = 100'000;

ListTable TableOf(const std::shared_ptr<Tap>& tap, const QString& subject) {
    const auto text = [](const QString& record) { return record; };
    return RecordTable<QString>{
        .page = {.name = {},
                 .widths = {},
                 .status = u"Shown."_s,
                 .empty = u"Empty."_s,
                 .loading = u"Loading."_s,
                 .listing = u"Listing."_s,
                 .subject = subject},
        .columns = {{u"Name"_s, 200, text}},
        .id = {[text, tap](const QString& record) { return ++tap->looks, text(record); }},
        .read = [tap](RecordStream<QString>& rows,
                      std::stop_token stop) { return tap->Read(rows, std::move(stop)); },
        .commands = {DeleteCommand<QString>(
            {.caption = u"Delete"_s}, {u"Really?"_s, {}, {}},
            [](const ServiceClient&, const QString&, const std::stop_token&) { return ServiceAnswer(); })},
        .actions = {{u"Sum Up"_s, 0, TableAction::AllRows, {}}}};
}

class TapPanel : public RecordPanel {
public:
    TapPanel(const Console& console, std::shared_ptr<Tap> tap)
        : RecordPanel(console, TableOf(tap, {})), m_tap(std::move(tap)) {}

    void Restart() { Turn(TableOf(m_tap, QString::number(++m_subject))); }

    int RowCount() const { return Table().Rows().rowCount(); }
    QString FirstRow() const { return Table().Rows().CellText(0, 0); }
    QString TextWithoutRows() const { return Table().TextWithoutRows(); }
    bool IsReading() const { return View()->IsReading(); }
    CBrenListCtrl& Table() const { return View()->List(); }

private:
    std::shared_ptr<Tap> m_tap;
    int m_subject = 0;
};

} // namespace

class RecordPanelTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<ThreadReader>>();
        m_tap = std::make_shared<Tap>();
        m_panel = std::make_unique<TapPanel>(m_fixture->console, m_tap);
        m_panel->Activate();
    }

    void cleanup() {
        m_panel.reset();
        m_fixture.reset();
    }

    void showsTheFirstRowsWhileItReads() {
        QCOMPARE(m_panel->TextWithoutRows(), u"Loading."_s);
        m_tap->LetCome(1);
        QTRY_COMPARE(m_panel->RowCount(), 1);
        QVERIFY(m_panel->IsReading());
        QCOMPARE(m_fixture->frame.StatusText(), u"Listing."_s);
        m_tap->LetCome(9); // in batches
        QTRY_VERIFY(m_panel->RowCount() > 1);
        QVERIFY(m_panel->IsReading());
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->RowCount(), 10);
        QCOMPARE(m_fixture->frame.StatusText(), u"Shown."_s);
    }

    void anEmptySourceEndsTheLoading() {
        m_tap->SetRows(u"a"_s, 0);
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->TextWithoutRows(), u"Empty."_s);
        m_tap->LetCome(0);
        m_panel->Reload();
        QCOMPARE(m_panel->TextWithoutRows(), u"Empty."_s); // it is known to be, until rows come
        m_tap->SetRows(u"b"_s, 2);
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->RowCount(), 2);
    }

    void appliesARefreshOnlyOnceItHasEnded() {
        QVERIFY(ReadToItsEnd());
        m_panel->Table().selectRow(3);
        m_tap->SetRows(u"b"_s, 5);
        m_tap->LetCome(2);
        m_panel->Reload();
        m_panel->Reload(); // in place of the first
        QTest::qWait(0);
        QCOMPARE(m_panel->FirstRow(), u"a0"_s);
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->RowCount(), 5);
        QCOMPARE(m_panel->FirstRow(), u"b0"_s);
        QVERIFY(m_panel->Table().SelectedRows().empty());
    }

    void restartsWithoutTheOldRows() {
        m_tap->LetCome(3);
        QTRY_VERIFY(m_panel->RowCount() > 0);
        m_tap->SetRows(u"b"_s, Many);
        m_panel->Restart();
        QCOMPARE(m_panel->RowCount(), 0);
        QCOMPARE(m_panel->TextWithoutRows(), u"Loading."_s);
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->RowCount(), Many);
        QCOMPARE(m_panel->FirstRow(), u"b0"_s);
        QVERIFY(m_fixture->frame.Captions().contains(u"Sum Up"_s));

        m_tap->LetCome(0);
        m_panel->Reload();
        QVERIFY(!m_fixture->frame.Captions().contains(u"Sum Up"_s)); // until all rows are there
        m_panel->Restart();
        QCOMPARE(m_panel->RowCount(), 0);
        QCOMPARE(m_panel->TextWithoutRows(), u"Loading."_s);
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->RowCount(), Many); // as they were before
    }

    void aDeletionLooksAtItsRowsOnly() {
        m_tap->SetRows(u"a"_s, Many);
        QVERIFY(ReadToItsEnd());
        m_panel->Table().selectRow(Many - 2);
        m_tap->looks = 0;
        m_fixture->prompts.ExpectQuestion(u"Really?\na%1"_s.arg(Many - 2), false);
        m_panel->Table().actions().first()->trigger();
        QVERIFY(m_fixture->prompts.IsPlayed());
        QVERIFY(m_tap->looks < 10);
    }

    void goesOnAfterItWasLeft_data() {
        const Columns<int> row("came");
        row("before the first row", 0);
        row("after some rows", 3);
    }

    void goesOnAfterItWasLeft() {
        QFETCH(int, came);
        m_tap->LetCome(came);
        QTRY_VERIFY(came == 0 || m_panel->RowCount() > 0);
        m_panel->Deactivate();
        QTRY_VERIFY(!m_panel->IsReading()); // with nothing let through: the read was told to stop
        QVERIFY(m_panel->RowCount() <= came);
        m_panel->Activate();
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->RowCount(), 10);
        QCOMPARE(m_panel->FirstRow(), u"a0"_s);
        QCOMPARE(m_fixture->frame.StatusText(), u"Shown."_s);
    }

    void keepsWhatCameBeforeAFailure() {
        const ReadResult damaged{ReadOutcome::Damaged, u"x.db"_s};
        m_tap->SetRows(u"a"_s, 10, damaged);
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->RowCount(), 10);
        QCOMPARE(m_fixture->frame.StatusText(), u"The file is damaged or no database: x.db"_s);
        m_tap->SetRows(u"b"_s, 3, damaged); // a refresh that fails shows nothing of what it brought
        m_panel->Reload();
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->RowCount(), 10);
        QCOMPARE(m_panel->FirstRow(), u"a0"_s);

        m_tap->SetRows(u"b"_s, 3);
        m_panel->Reload();
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->RowCount(), 3);
        QCOMPARE(m_fixture->frame.StatusText(), u"Shown."_s);

        // Without rows the failure stands in the list too.
        m_tap->SetRows(u"c"_s, 0, {ReadOutcome::Missing, u"x.db"_s});
        m_panel->Restart();
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->TextWithoutRows(), u"The database does not exist: x.db"_s);
        m_tap->SetRows(u"c"_s, 0, {ReadOutcome::Failed, u"thrown"_s});
        m_panel->Restart();
        QVERIFY(ReadToItsEnd());
        QCOMPARE(m_panel->TextWithoutRows(), u"The data could not be read: thrown"_s);
    }

private:
    bool ReadToItsEnd() {
        m_tap->LetCome(Everything);
        return QTest::qWaitFor([this] { return !m_panel->IsReading(); });
    }

    std::unique_ptr<PageFixture<ThreadReader>> m_fixture;
    std::shared_ptr<Tap> m_tap;
    std::unique_ptr<TapPanel> m_panel;
};

BTASK_TEST(RecordPanelTest);

#include "RecordPanelTest.moc"
