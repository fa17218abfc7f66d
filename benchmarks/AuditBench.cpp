#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "development/WatchedReader.h"
#include "lanes/ThreadReader.h"
#include "list/BrenListCtrl.h"
#include "list/TraceRows.h"
#include "settings/AuditTracePanel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <stdexcept>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Traces = 1'000'000;
constexpr int Rounds = 5;
constexpr QSize PageSize(770, 500);
constexpr char Statement[] = "SELECT * FROM AuditTrace  ORDER BY  DT DESC ";

/// Exports without asking, and takes note of what a copy brings.
class BenchPrompts : public WindowPrompts {
public:
    void PickPath(QWidget*, const PickRequest&, std::function<void(std::optional<QString>)> answer) override {
        answer(file);
    }
    void SetClipboardText(const QString& text) override {
        WindowPrompts::SetClipboardText(text);
        copied = text.size();
    }
    void Tell(QWidget*, const MessageText&, std::function<void()>) override {}

    QString file;
    qsizetype copied = 0;
};

/// Keeps the buttons of the page.
class ButtonFrame : public NoFrame {
public:
    void SetToolbar(QWidget&, const std::vector<FrameAction>& actions) override { m_buttons = actions; }

    void Press(const QString& caption) const {
        for (const FrameAction& button : std::vector<FrameAction>(m_buttons))
            if (button.caption == caption)
                return button.run();
        throw std::runtime_error("there is no such button");
    }

private:
    std::vector<FrameAction> m_buttons;
};

struct AuditHome {
    AuditHome() : parts("empty") {
        devservice::DevService& service = parts.home.Service();
        service.Execute(
            service.DatabaseFile(devservice::Database::AuditTrace),
            "DROP INDEX IF EXISTS AuditTraceByTime; WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
            "SELECT i + 1 FROM n WHERE i < " +
                std::to_string(Traces) +
                ") INSERT INTO AuditTrace SELECT (i % 50 = 0) + (i % 400 = 0), 'Upload of scan ' "
                "|| i || ' to /home/Archive has ended', datetime('2025-03-04', '-' || (i * 7919 % "
                "1000003) || ' seconds') FROM n");
        file = service.DatabaseFile(devservice::Database::AuditTrace).string();
    }

    ConsoleParts parts;
    BenchPrompts prompts;
    ButtonFrame frame;
    std::string file;
};

/// The page over a reader of its own, asked for all traces.
struct AuditPage {
    explicit AuditPage(AuditHome& home)
        : reader(threads), console{home.parts.client, home.parts.counters,    home.prompts,    reader,
                                   home.frame,        home.parts.settingNews, home.parts.links},
          panel(console) {
        panel.resize(PageSize);
        panel.Activate();
        for (auto* field : panel.findChildren<QLineEdit*>())
            if (field->accessibleName().startsWith("Maximum"_L1))
                field->setText(u"0"_s);
        list = panel.findChild<CBrenListCtrl*>();
        QApplication::processEvents();
    }

    void PressQuery() const { panel.findChild<QPushButton*>()->click(); }
    int Rows() const { return list->Rows().rowCount(); }

    ThreadReader threads;
    WatchedReader reader;
    Console console;
    CAuditTracePanel panel;
    CBrenListCtrl* list;
};

template <typename Condition>
double Until(const QElapsedTimer& since, Condition holds) {
    while (!holds()) {
        if (since.hasExpired(60'000))
            throw std::runtime_error("the audit trace was never read");
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return double(since.nsecsElapsed()) / 1e6;
}

/// The longest time that the window stands still from a wish on until `holds`.
template <typename Wish, typename Condition>
double LongestStall(Wish wish, Condition holds) {
    double longest = MillisecondsOf(wish);
    QElapsedTimer clock;
    clock.start();
    for (bool held = false; !held;) {
        if (clock.hasExpired(60'000))
            throw std::runtime_error("a wish of the page was never fulfilled");
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        held = holds();
        longest = std::max(longest, MillisecondsOf([] { QApplication::processEvents(); }));
    }
    return longest;
}

QString TextOf(sqlite3_stmt* row, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(row, column));
    return text ? QString::fromUtf8(text, sqlite3_column_bytes(row, column)) : QString();
}

/// The plainest loop that keeps the same texts; returns when its first row came.
double WalkBare(const std::string& file, std::vector<std::pair<QString, QString>>& texts) {
    QElapsedTimer clock;
    clock.start();
    double first = 0;
    sqlite3* connection = nullptr;
    sqlite3_stmt* row = nullptr;
    if (sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK ||
        sqlite3_prepare_v2(connection, Statement, -1, &row, nullptr) != SQLITE_OK)
        throw std::runtime_error("the bare loop cannot read the database");
    while (sqlite3_step(row) == SQLITE_ROW) {
        if (texts.empty())
            first = double(clock.nsecsElapsed()) / 1e6;
        texts.emplace_back(TextOf(row, 1), TextOf(row, 2));
    }
    sqlite3_finalize(row);
    sqlite3_close(connection);
    if (texts.size() != Traces)
        throw std::runtime_error("the bare loop lost rows");
    return first;
}

double Utf16MiB(const std::string& file) {
    std::vector<std::pair<QString, QString>> texts;
    WalkBare(file, texts);
    double units = 0;
    for (const auto& [trace, time] : texts)
        units += double(trace.size() + time.size());
    return units * 2 / (1 << 20);
}

void MeasureMemory(BenchTable& table) {
    AuditHome home;
    const double needed = PeakMemoryOf([&home] {
        AuditPage page(home);
        QElapsedTimer clock;
        clock.start();
        page.PressQuery();
        Until(clock, [&page] { return page.Rows() == Traces; });
        page.panel.grab();
    });
    table.Add({.name = "1,000,000 audit rows, memory beside their UTF-16 text",
               .unit = "MiB",
               .ours = needed,
               .reference = Utf16MiB(home.file),
               .maxRatio = 2.0});
}

void MeasureQuery(BenchTable& table) {
    AuditHome home;
    Samples first;
    Samples all;
    Samples bareFirst;
    Samples bareAll;
    Samples cancel;
    for (int round = 0; round < Rounds; ++round) {
        bareAll.Add(MillisecondsOf([&] {
            std::vector<std::pair<QString, QString>> texts;
            bareFirst.Add(WalkBare(home.file, texts));
        }));
        AuditPage page(home);
        QElapsedTimer clock;
        clock.start();
        page.PressQuery();
        Until(clock, [&page] { return page.Rows() > 0; });
        page.panel.grab();
        first.Add(double(clock.nsecsElapsed()) / 1e6);
        all.Add(Until(clock, [&page] { return page.Rows() == Traces; }));
        // Given up while SQLite sorts, and while rows come.
        for (const bool listing : {false, true}) {
            Until(clock, [&page] { return page.reader.IsIdle(); });
            page.PressQuery();
            clock.restart();
            Until(clock, [&] { return listing ? page.Rows() > 0 : clock.hasExpired(200); });
            clock.restart();
            page.PressQuery();
            cancel.Add(Until(clock, [&page] { return page.reader.IsIdle(); }));
        }
    }
    table.Add({.name = "1,000,000 audit rows, first screen beyond SQLite's first row",
               .unit = "ms",
               .ours = first.Median() - bareFirst.Median(),
               .maxOurs = 100.0});
    table.Add({.name = "1,000,000 audit rows, all, beside a loop that copies the texts",
               .unit = "ms",
               .ours = all.Median(),
               .reference = bareAll.Median(),
               .maxRatio = 1.5});
    table.Add({.name = "1,000,000 audit rows, end of a stopped query",
               .unit = "ms",
               .ours = cancel.Percentile(100),
               .maxOurs = 50.0});
}

void MeasureStalls(BenchTable& table) {
    AuditHome home;
    home.prompts.file = QString::fromStdString(home.file + ".csv");
    AuditPage page(home);
    const auto add = [&table](const char* wish, double stall) {
        table.Add({.name = std::string("1,000,000 audit rows, longest stall: ") + wish,
                   .unit = "ms",
                   .ours = stall,
                   .maxOurs = 50.0});
    };
    const auto all = [&page] { return page.Rows() == Traces && page.reader.IsIdle(); };
    add("a query", LongestStall([&page] { page.PressQuery(); }, all));
    add("a copy of all", LongestStall([&home] { home.frame.Press(u"Copy To Clipboard"_s); },
                                      [&home] { return home.prompts.copied > 0; }));
    add("an export", LongestStall([&home] { home.frame.Press(u"Export as CSV..."_s); },
                                  [&page] { return page.reader.IsIdle(); }));
    add("a level is hidden",
        LongestStall([&page] { page.list->HideRows(TraceLevelColumn, {Cell::Swatch(SwatchColour::Green)}); },
                     [&page] { return !page.list->IsWorking(); }));
    page.list->HideRows(TraceLevelColumn, {});
    add("another query", LongestStall([&page] { page.PressQuery(); }, all));
}

// The memory first: a child process starts with all that its parent holds.
const BenchRegistration Memory("audit memory", MeasureMemory);
const BenchRegistration Query("audit query", MeasureQuery);
const BenchRegistration Stalls("audit stalls", MeasureStalls);

} // namespace
