#include "backup/BackupItem.h"

#include "backup/BackupSettingsPage.h"
#include "backup/BackupSummary.h"
#include "backup/SnapshotsPanel.h"
#include "backup/UndoneFiles.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/TabPanel.h"
#include "zep/UserSettings.h"

#include <QCheckBox>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString AdvancedMode = u"BackupTaskAdvancedMode"_s;
constexpr int AdvancedTabs = 4; ///< the last ones

TaskCardView SettingsView() {
    return {CBackupItem::tr("Backup Settings"), TaskSettingsIcon,
            [](const Console& console, const TaskRow& task) -> TaskView {
                auto* page = new BackupSettingsPage(console);
                page->Turn(task);
                return {page, [page](const TaskRow& turned) { page->Turn(turned); }};
            }};
}

TaskCardView SnapshotsView() {
    return {CBackupItem::tr("Snapshots and Restore"), DownloadIcon,
            [](const Console& console, const TaskRow& task) -> TaskView {
                auto* panel = new CSnapshotsPanel(console, task);
                return {panel, [panel](const TaskRow& turned) { panel->Turn(turned); }};
            }};
}

/// As the list of snapshot backups has it.
bool KeepsSnapshots(BackupKind kind) {
    return kind == BackupKind::Application || kind == BackupKind::FileType || kind == BackupKind::Folder;
}

TaskCardPlan BackupCard(const LiveCounters& counters, const TaskRow& task) {
    const BackupKind kind = KindOfBackup(task.type, task.description);
    std::vector<TaskCardView> views;
    if (KeepsSnapshots(kind))
        views.push_back(SnapshotsView());
    views.push_back(HistoryView());
    if (kind != BackupKind::CrossCloud)
        views.push_back(SettingsView());
    views.insert(views.end(), {RunningView(counters), PendingView(), PendingRetryView(), TraceView()});
    return {[](const TaskRow& shown) { return BackupKindText(KindOfBackup(shown.type, shown.description)); },
            BackupSummary(), std::move(views)};
}

} // namespace

CBackupItem::CBackupItem(const Console& console, CommandRunner& commands, const TaskRow& task)
    : CTaskManItem(console, commands, task, BackupCard(console.counters, task)) {}

CBackupItem::RunMark CBackupItem::Mark() const {
    return {Task().id, Task().lastRun, Task().nextRun, Task().state};
}

void CBackupItem::SetRuns(const RunMark& of, const BackupRuns& runs) {
    m_runsOf = of;
    m_runs = runs;
    OnUpdated();
}

BackupRuns CBackupItem::KnownRuns() const {
    return m_runsOf && m_runsOf->id == Task().id ? m_runs : BackupRuns();
}

std::optional<qint64> CBackupItem::Overdue() const {
    return OverdueDays(KnownRuns(), Task().schedule, WallTime(QDateTime::currentDateTime()));
}

void CBackupItem::OnUpdated() {
    const TaskRow& task = Task();
    const BackupRuns runs = KnownRuns();
    const bool isRunning = task.state == TaskState::Running;
    const QString outcome = OutcomeText(runs.last);
    std::vector<CardRemark> remarks;
    const auto add = [&remarks](const QString& text, const QColor& ink) {
        if (!text.isEmpty())
            remarks.push_back({text, ink});
    };
    // A run under way has taken up again what the last one left.
    add(isRunning ? outcome : QString(), Look::Failed);
    add(LacksNextRun(task.state, task.schedule, task.nextRun) ? tr("no next run is planned") : QString(),
        Look::Failed);
    add(PausedText(task.state, runs), Look::Paused);
    add(CleanAgeText(runs, WallTime(QDateTime::currentDateTime())),
        Overdue() ? Look::Failed : Look::Secondary);
    add(LateText(runs, task.nextRun), Look::Secondary);
    SetRemarks(std::move(remarks));
    SetRemarkLink(isRunning ? QString() : outcome, [this, failed = runs.last.failedSubTasks > 0] {
        OpenUndoneFiles(TheConsole(), *this, Task(), failed ? UndoneFiles::Failed : UndoneFiles::NotDone);
    });
}

void CBackupItem::FinishViews(CTabPanel& tabs) {
    const int plain = tabs.PageCount() - AdvancedTabs;
    auto* advanced = new QCheckBox(tr("Advanced Mode"));
    advanced->setFont(Look::Font(Look::Small));
    advanced->setChecked(ZEPSettingsGetSwitch(AdvancedMode));
    if (!advanced->isChecked())
        tabs.ShowFirstTabs(plain);
    tabs.SetCorner(advanced);
    connect(advanced, &QCheckBox::toggled, &tabs, [&tabs, plain](bool on) {
        ZEPSettingsSetSwitch(AdvancedMode, on);
        on ? tabs.ShowAllTabs(plain) : tabs.ShowFirstTabs(plain);
    });
}
