#include "syncfolders/SyncSummary.h"

#include "list/CellMarkup.h"
#include "look/IconRegistry.h"
#include "syncfolders/SyncCommands.h"
#include "syncplan/LocalFolder.h"
#include "taskman/TaskCommands.h"
#include "taskman/TaskFacts.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int TitleWidth = 240; ///< its longest title is cut by the usual one

// Where rows stand that can be clicked.
constexpr int LocationRow = 1;
constexpr int FailedRow = 3;
constexpr int FirstFileRow = 5;

/// None unless the service knows what it counts, and counts no more processed than there are.
std::optional<QString> ProcessedText(const SubTaskCounts& counts) {
    if (!counts.total || counts.processed.value_or(0) > *counts.total)
        return {};
    return SyncSummary::tr("%1 of %2 total sub-tasks").arg(counts.processed.value_or(0)).arg(*counts.total);
}

} // namespace

SyncSummary::SyncSummary(const Console& console, SyncCommands& commands, const SyncRow& row, WallClock clock)
    : SummaryPanel(console, u"SyncSummary"_s, TitleWidth), m_commands(commands), m_row(row),
      m_clock(std::move(clock)) {
    SetHelp(tr("View summary information for the Cloud Sync Folder."));
    connect(&commands, &SyncCommands::BusyChanged, this, &SyncSummary::ShowToolbar);
}

void SyncSummary::CreatePanel() {
    SummaryPanel::CreatePanel();
    SetRows(Rows(), Known::Before);
}

void SyncSummary::SetRow(const SyncRow& row) {
    m_row = row;
    SetRows(Rows(), m_facts ? Known::Read : Known::Before);
    ShowToolbar();
}

void SyncSummary::Activate() {
    ShowToolbar();
    SummaryPanel::Activate();
}

void SyncSummary::ShowToolbar() {
    const bool known = m_row.task.has_value();
    const auto action = known ? SyncActionOf(m_row.task->state) : std::nullopt;
    std::vector<FrameAction> buttons;
    if (action)
        buttons.push_back({action->caption, TaskActionImage(action->action),
                           [this, action = *action] { m_commands.Run(m_row, action); },
                           !m_commands.IsRunning(m_row, *action)});
    buttons.push_back({tr("Disable"), DismountIcon, [this] { m_commands.Disable(m_row.folder); },
                       !m_commands.IsDisabling(m_row.folder.name)});
    buttons.push_back({tr("Refresh"), RefreshIcon, [this] { emit m_commands.Changed(); }});
    buttons.push_back({tr("Open Folder"), OpenFolderIcon, [this] { m_commands.Open(m_row.folder.path); }});
    SetToolbar(std::move(buttons));
}

void SyncSummary::Reload() {
    Loader().Load(
        Lane::Databases,
        [name = m_row.folder.name, id = m_row.taskId,
         counters = &TheConsole().counters](std::stop_token stop) {
            Facts facts;
            if (!id.isEmpty())
                facts.counts = counters->ZEPTraceGetSTaskInfo(id);
            facts.read = FillHistory(HistoryView::Summary, name, facts.changes, std::move(stop));
            return facts;
        },
        [this](const Loaded<Facts>& facts) {
            if (facts)
                Show(*facts);
        });
}

/// Changes that could not be read again stay.
void SyncSummary::Show(const Facts& facts) {
    std::vector<HistoryRecord> before = m_facts ? std::move(m_facts->changes) : std::vector<HistoryRecord>();
    m_facts = facts;
    if (!facts.read)
        m_facts->changes = std::move(before);
    TellFailure(facts.read.Sentence());
    SetRows(Rows());
}

std::optional<QString> SyncSummary::StatusDetail() const {
    const SubTaskCounts& counts = m_facts ? m_facts->counts : m_row.counts;
    if (!m_row.task)
        return tr("There is no sync task for it yet");
    if (m_row.IsRunning() && counts.total.value_or(0) > 0)
        return ProgressText(counts);
    return SyncStatusText(m_row.task->state, m_row.task->nextRun, m_clock());
}

std::vector<SummaryRow> SyncSummary::Rows() const {
    const SubTaskCounts& counts = m_facts ? m_facts->counts : m_row.counts;
    const QString failed = FailedFilesText(m_row.failed);
    std::vector<SummaryRow> rows{{tr("Virtual Directory Name"), Cell::Plain(m_row.folder.name)},
                                 {tr("Sync Folder Location(click to open)"), Cell::Plain(m_row.folder.path)},
                                 {tr("Sync Task Status/Progress"), StatusDetail()},
                                 {failed.isEmpty() ? QString() : tr("Failed Files(click to see)"), failed},
                                 {tr("Recent Changed Files"), tr("Click file name to open")}};
    AddChanges(rows);
    rows.insert(rows.end(), {{tr("Pending Subtasks"), ProcessedText(counts)},
                             {tr("Pending Retry Subtasks"), CountText(counts.pendingRetry)},
                             {tr("Running Subtasks"), CountText(counts.running)}});
    return rows;
}

void SyncSummary::AddChanges(std::vector<SummaryRow>& rows) const {
    if (!m_facts)
        return;
    const qint64 now = CurrentStamp();
    for (const FileChange& change : ChangesOf(m_facts->changes))
        rows.push_back({tr("%1 %2").arg(ChangeText(change.operation), StampText(change.stamp, now)).trimmed(),
                        Cell::Plain(change.file)});
}

void SyncSummary::OnRowClicked(const TakenRow& row) {
    const QString detail = WordsOfCell(row.Cell(1));
    if (row.place == LocationRow)
        return m_commands.Open(detail);
    if (row.place == FailedRow && !detail.isEmpty())
        emit FailedFilesWanted();
    const QString inside = row.place >= FirstFileRow ? FileInside(detail, m_row.folder.name) : QString();
    if (const QString local = inside.isEmpty() ? QString() : LocalFile(m_row.folder, inside);
        !local.isEmpty())
        m_commands.Open(local);
}
