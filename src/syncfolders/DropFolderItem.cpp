#include "syncfolders/DropFolderItem.h"

#include "list/CellMarkup.h"
#include "list/RecordPanel.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/ModeBox.h"
#include "page/TabPanel.h"
#include "service/KnownSettings.h"
#include "syncfolders/DropFolder.h"
#include "syncfolders/DropFolderChanges.h"
#include "syncfolders/SyncCommands.h"
#include "syncfolders/SyncSummary.h"
#include "taskman/RunningTable.h"
#include "taskman/SubTaskTable.h"
#include "taskman/TaskCommands.h"
#include "taskman/TaskFacts.h"
#include "taskman/TaskList.h"
#include "taskman/TraceTable.h"

using namespace Qt::Literals::StringLiterals;

namespace {

enum Tab : int {
    SummaryTab,
    VersionsTab,
    ChangesTab,
    ActivitiesTab,
    PendingTab,
    RetryTab,
    TraceTab,
    TabCount
};

} // namespace

CDropFolderItem::CDropFolderItem(const Console& console, SyncCommands& commands, const SyncRow& row,
                                 WallClock clock)
    : CTaskItem(row.title), m_console(console), m_commands(commands), m_clock(std::move(clock)), m_row(row),
      m_disable(AddAction(tr("Disable"), DismountIcon, [this] { m_commands.Disable(m_row.folder); })),
      m_open(AddAction(tr("Open Folder"), OpenFolderIcon, [this] { m_commands.Open(m_row.folder.path); })),
      m_act(-1), m_failedFiles(-1) {
    AddAction(tr("Refresh"), RefreshIcon, [this] { emit m_commands.Changed(); });
    m_act = AddAction({}, PauseIcon, [this] {
        if (const auto action = m_row.task ? SyncActionOf(m_row.task->state) : std::nullopt)
            m_commands.Run(m_row, *action);
    });
    m_failedFiles = AddAction({}, TaskFailedIcon, [this] { ShowFailedFiles(); });
    ShowAction(m_failedFiles, false);
    connect(&commands, &SyncCommands::BusyChanged, this, &CDropFolderItem::ShowBusy);
}

void CDropFolderItem::Update(const SyncRow& row) {
    m_row = row;
    QStringList body{Look::OneLine(row.folder.path), row.pausedSince};
    body.removeAll(QString());
    SetBodyText(body.join(u"  \u00B7  "_s), row.folder.path);
    ShowStatus();
    ShowBusy();
    if (m_summary)
        m_summary->SetRow(row);
    if (m_versions)
        m_versions->SetFolder(row.folder);
    for (const TaskView& view : m_views)
        view.panel->Turn(view.tableOf(TaskOf()));
    if (m_tabs)
        ShowTabs();
}

void CDropFolderItem::ShowStatus() {
    const bool known = m_row.task.has_value();
    const auto shown = static_cast<TaskState>(m_row.shownState);
    SetStatusIcon(QLatin1String(MeaningOf(shown).icon), m_row.shownState, TaskStateText(shown));
    const QString failed = FailedFilesText(m_row.failed);
    const auto text = known ? SyncStatusText(m_row.task->state, m_row.task->nextRun, m_clock())
                            : std::optional(tr("There is no sync task for it yet"));
    if (m_row.IsRunning() && m_row.counts.total.value_or(0) > 0)
        SetStatusText(WordsOfCell(ProgressText(m_row.counts)));
    else if (text)
        SetStatusText(*text);
    SetFailure(failed.isEmpty() || StatusText().isEmpty() ? failed : failed + u"  \u00B7  "_s + StatusText());
    SetProgress(m_row.IsRunning() ? ProgressOf(m_row.counts).value_or(0) : 0);
    SetAction(m_failedFiles, failed, TaskFailedIcon);
    ShowAction(m_failedFiles, m_row.failed > 0);
    const auto action = known ? SyncActionOf(m_row.task->state) : std::nullopt;
    ShowAction(m_act, action.has_value());
    if (action)
        SetAction(m_act, action->caption, TaskActionImage(action->action));
}

void CDropFolderItem::ShowBusy() {
    const auto action = m_row.task ? SyncActionOf(m_row.task->state) : std::nullopt;
    EnableAction(m_act, action && !m_commands.IsRunning(m_row, *action));
    EnableAction(m_disable, !m_commands.IsDisabling(m_row.folder.name));
}

void CDropFolderItem::OnExpanded() {
    if (!m_tabs)
        MakeViews();
    m_mode->Read();
    ShowTabs();
    if (std::exchange(m_failedWanted, false))
        m_tabs->SelectPage(RetryTab);
    CTaskItem::OnExpanded();
}

void CDropFolderItem::ShowFailedFiles() {
    if (IsExpanded()) {
        ShowTabs();
        m_tabs->SelectPage(RetryTab);
        return;
    }
    m_failedWanted = true;
    emit Toggled();
}

/// The views of the task know it as a row of the list of tasks.
TaskRow CDropFolderItem::TaskOf() const {
    TaskRow row;
    row.id = m_row.taskId;
    row.title = m_row.title;
    row.description = m_row.folder.path + u"\t/"_s + m_row.folder.name;
    if (m_row.task) {
        row.state = m_row.task->state;
        row.lastRun = m_row.task->lastRun;
        row.nextRun = m_row.task->nextRun;
    }
    return row;
}

void CDropFolderItem::MakeViews() {
    m_tabs = new CTabPanel(m_console);
    m_summary = new SyncSummary(m_console, m_commands, m_row, m_clock);
    connect(m_summary, &SyncSummary::FailedFilesWanted, this, &CDropFolderItem::ShowFailedFiles);
    m_versions = new CDropFolder(m_console, m_commands, m_row.folder);
    m_tabs->AddTab(tr("Summary"), m_summary, SummaryIcon);
    m_tabs->AddTab(tr("Version Manager"), m_versions, FileVersionsIcon);
    m_tabs->AddTab(tr("Change Log"),
                   new CDropFolderChanges(m_console, m_row.folder.name,
                                          [card = QPointer(this)](const QString& file) {
                                              if (card)
                                                  card->ShowVersions(file);
                                          }),
                   EditIcon);
    struct View {
        QString title;
        int image;
        std::function<ListTable(const TaskRow&)> tableOf;
    };
    const View views[] = {
        {tr("Current Activities"), SystemActivitiesIcon,
         [counters = &m_console.counters](const TaskRow& task) { return RunningTable(*counters, task); }},
        {tr("Pending Sync Action"), TaskPendingIcon,
         [](const TaskRow& task) { return SubTaskTable(task, SubtaskView::Pending); }},
        {tr("Pending Retry Action"), TaskFailedIcon,
         [](const TaskRow& task) { return SubTaskTable(task, SubtaskView::PendingRetry); }},
        {tr("Sync Task Trace"), TraceIcon, TraceTable}};
    for (const View& view : views) {
        m_views.push_back({new RecordPanel(m_console, view.tableOf(TaskOf())), view.tableOf});
        m_tabs->AddHiddenTab(view.title, m_views.back().panel, view.image);
    }
    m_mode = new ModeBox(m_console, Settings::DFAdvancedMode);
    m_tabs->SetCorner(m_mode);
    connect(m_mode, &ModeBox::Changed, this, &CDropFolderItem::ShowTabs);
    SetContent(m_tabs);
}

/// Files that failed have their tab in either mode.
void CDropFolderItem::ShowTabs() {
    const bool hasTask = !m_row.taskId.isEmpty();
    for (int tab = ActivitiesTab; tab < TabCount; ++tab) {
        const bool wanted = hasTask && (m_mode->IsAdvanced() || (tab == RetryTab && m_row.failed > 0));
        if (wanted != m_tabs->IsTabShown(tab))
            m_tabs->ShowTab(tab, wanted);
    }
}

void CDropFolderItem::ShowVersions(const QString& file) {
    m_tabs->SelectPage(VersionsTab);
    m_versions->ShowVersions(file);
}
