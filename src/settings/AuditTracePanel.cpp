#include "settings/AuditTracePanel.h"

#include "list/BrenListCtrl.h"
#include "list/RecordView.h"
#include "list/TraceRows.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "settings/AuditFilterForm.h"
#include "zep/Text.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::milliseconds CountPeriod{100};
constexpr std::array ShownLevels{SwatchColour::Green, SwatchColour::Yellow, SwatchColour::Red};

QString WordOf(SwatchColour level) {
    return WordsOfCell(Cell::Swatch(level));
}

RecordPage PageOf(int query) {
    return {.name = CAuditTracePanel::tr("Audit Trace"),
            .widths = u"AuditTrace"_s,
            .empty = query == 0 ? CAuditTracePanel::tr("No query has been made yet.")
                                : RecordView::tr("No Record Found."),
            .loading = CAuditTracePanel::tr("Querying, please wait..."),
            .subject = QString::number(query)};
}

} // namespace

/// A query, for its lane and the window.
struct CAuditTracePanel::Asked {
    explicit Asked(AuditFilter asked) : filter(std::move(asked)) {}

    bool IsLimitReached() const {
        bool isNumber = false;
        const uint maximum = filter.maximum.toUInt(&isNumber);
        return isNumber && filter.maximum != "0"_L1 && uint(counts->Total()) >= maximum;
    }

    const AuditFilter filter;
    const std::shared_ptr<TraceCounts> counts = std::make_shared<TraceCounts>();
    std::atomic<ReadOutcome> outcome = ReadOutcome::Stopped; ///< until the walk has ended
};

CAuditTracePanel::CAuditTracePanel(const Console& console, QWidget* parent) : CBrenPanel(console, parent) {}

void CAuditTracePanel::CreatePanel() {
    m_filter = new AuditFilterForm;
    m_view = new RecordView(TheConsole(), TraceRows(PageOf(0), [](const AuditCallback&, std::stop_token) {
                                return ReadResult();
                            }));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    layout->setSpacing(Look::CardGap);
    layout->addWidget(m_filter);
    layout->addWidget(MakeLine());
    layout->addWidget(m_view, 1);
    connect(m_filter, &AuditFilterForm::QueryWanted, this, &CAuditTracePanel::Query);
    connect(m_filter, &AuditFilterForm::StopWanted, m_view, &RecordView::CancelRead);
    connect(m_view, &RecordView::Changed, this, &CAuditTracePanel::ShowState);
    connect(&m_countTimer, &QTimer::timeout, this, &CAuditTracePanel::ShowCounts);
    SetHelp(tr("Input trace filters and click the query button to view audit trace information. Unlimited "
               "trace length can cause very slow queries. 500-1000 are usually enough to see any recent "
               "issues."));
    ShowState();
}

QWidget* CAuditTracePanel::MakeLine() {
    auto* line = new QWidget;
    auto* row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    m_line = new QLabel;
    m_line->setWordWrap(true);
    row->addWidget(m_line, 1);
    for (QCheckBox*& box : m_levels) {
        box = new QCheckBox;
        box->setChecked(true);
        box->setFont(Look::Font(Look::Small));
        box->setToolTip(tr("Shows or hides the traces of this level"));
        connect(box, &QCheckBox::toggled, this, &CAuditTracePanel::HideLevels);
        row->addWidget(box);
    }
    m_line->setFont(Look::Font(Look::Small));
    return line;
}

void CAuditTracePanel::Activate() {
    m_entering = true; // whoever comes back finds what was there
    CBrenPanel::Activate();
    m_entering = false;
}

void CAuditTracePanel::Reload() {
    if (!m_entering)
        Query();
}

void CAuditTracePanel::OpenFind() {
    emit m_view->List().FindRequested();
}

void CAuditTracePanel::ShowTraces(const QString& from, const QString& to) {
    EnsureCreated();
    m_filter->AskForTimes(from, to);
    m_view->setFocus();
    Query();
}

void CAuditTracePanel::Query() {
    m_filter->Remember();
    m_asked = std::make_shared<Asked>(m_filter->Filter());
    const auto walk = [asked = m_asked](const AuditCallback& callback, std::stop_token stop) {
        ReadResult read = AuditTraceStore(std::move(stop)).EnumTraces(asked->filter, callback);
        asked->outcome = read.outcome;
        // What cannot be understood is told above the table, and nowhere else.
        return read.outcome == ReadOutcome::BadStatement ? ReadResult() : read;
    };
    RecordTable<Trace> table = TraceRows(PageOf(++m_queries), walk, m_asked->counts);
    table.actions = {{tr("Copy To Clipboard"), CopyIcon, TableAction::AllRows,
                      [](RecordView& view, const std::function<void()>& done) {
                          CopyTraces(view, {TraceTimeColumn, TraceMessageColumn}, u"\r\n"_s, done);
                      }},
                     {tr("Export as CSV..."), DownloadIcon, TableAction::AllRows,
                      [](RecordView& view, const std::function<void()>& done) {
                          view.List().ExportRows();
                          done();
                      }},
                     {tr("Next Error (F8)"), TaskFailedIcon, TableAction::Rows,
                      [this](RecordView&, const std::function<void()>& done) {
                          GoToError(false);
                          done();
                      }}};
    m_view->Turn(std::move(table));
}

/// Keys that no field has taken.
void CAuditTracePanel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F8)
        GoToError(event->modifiers().testFlag(Qt::ShiftModifier));
    else
        CBrenPanel::keyPressEvent(event);
}

void CAuditTracePanel::GoToError(bool before) {
    m_view->List().SelectNext(TraceLevelColumn, WordOf(SwatchColour::Red), before);
}

void CAuditTracePanel::HideLevels() {
    QStringList hidden;
    for (std::size_t at = 0; at < ShownLevels.size(); ++at)
        if (!m_levels[at]->isChecked())
            hidden << Cell::Swatch(ShownLevels[at]);
    m_view->List().HideRows(TraceLevelColumn, hidden);
}

void CAuditTracePanel::ShowState() {
    const bool running = m_view->IsReading();
    if (running && !m_countTimer.isActive())
        m_countTimer.start(CountPeriod);
    else if (!running)
        m_countTimer.stop();
    m_filter->SetRunning(running);
    TellFailure(m_view->Failure());
    SetToolbar(m_view->Buttons());
    ShowCounts();
}

void CAuditTracePanel::ShowCounts() {
    m_line->setText(Line());
    for (std::size_t at = 0; at < ShownLevels.size(); ++at)
        m_levels[at]->setText(m_asked ? u"%1 %2"_s.arg(WordOf(ShownLevels[at]),
                                                       GroupedNumber(m_asked->counts->Of(ShownLevels[at])))
                                      : WordOf(ShownLevels[at]));
}

QString CAuditTracePanel::Line() const {
    if (!m_asked)
        return {};
    const int count = m_asked->counts->Total();
    const QString rows = count == 1 ? tr("1 row") : tr("%1 rows").arg(GroupedNumber(count));
    if (m_view->IsReading())
        return tr("%1 so far").arg(rows);
    switch (m_asked->outcome) {
    case ReadOutcome::Done:
        return m_asked->IsLimitReached() ? tr("%1 (limit reached)").arg(rows) : rows;
    case ReadOutcome::BadStatement:
        return tr("The filter could not be understood");
    case ReadOutcome::Stopped:
        return tr("%1 (stopped)").arg(rows);
    default:
        return tr("%1 (broken off)").arg(rows);
    }
}
