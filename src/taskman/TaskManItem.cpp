#include "taskman/TaskManItem.h"

#include "list/RecordPanel.h"
#include "look/IconRegistry.h"
#include "page/TabPanel.h"
#include "stores/TaskState.h"
#include "taskman/HistoryTable.h"
#include "taskman/RunningTable.h"
#include "taskman/SubTaskTable.h"
#include "taskman/TaskClass.h"
#include "taskman/TaskSummary.h"
#include "taskman/TraceTable.h"

#include <algorithm>

namespace {

const QString StartOrPauseKey = QStringLiteral("start or pause");
const QString CancelKey = QStringLiteral("cancel");

struct StateLook {
    int icon;
    const char* text;
};

StateLook LookOf(int state) {
    switch (static_cast<TaskState>(state)) {
    case TaskState::Running:
        return {TaskRunningIcon, QT_TRANSLATE_NOOP("CTaskManItem", "Running")};
    case TaskState::Paused:
        return {TaskPausedIcon, QT_TRANSLATE_NOOP("CTaskManItem", "Paused")};
    case TaskState::Failed:
        return {TaskFailedIcon, QT_TRANSLATE_NOOP("CTaskManItem", "Failed")};
    case TaskState::Completed:
        return {TaskCompletedIcon, QT_TRANSLATE_NOOP("CTaskManItem", "Completed")};
    case TaskState::Pending:
        return {TaskPendingIcon, QT_TRANSLATE_NOOP("CTaskManItem", "Pending")};
    case TaskState::Held:
        break;
    }
    return {TaskPendingIcon, nullptr};
}

} // namespace

CTaskManItem::CTaskManItem(const Console& console, const TaskRow& task)
    : CTaskItem(task.name), m_console(console), m_task(task),
      m_cancel(AddAction(tr("Cancel Task"), CancelTaskIcon, [this] { Cancel(); })),
      m_startOrPause(AddAction(tr("Start Now"), StartIcon, [this] { StartOrPause(); })),
      m_commands(new CommandRunner(console, *this)) {
    connect(m_commands, &CommandRunner::BusyChanged, this, &CTaskManItem::ShowBusy);
}

void CTaskManItem::Update(const TaskRow& task) {
    if (task.id != m_task.id)
        m_meter = {};
    m_task = task;
    if (m_summary)
        m_summary->SetTask(task.id, task.type);
    for (const View& view : m_views)
        view.panel->Turn(view.tableOf(task));
    const bool running = task.state == static_cast<int>(TaskState::Running);
    const StateLook look = LookOf(task.state);
    SetStatusIcon(look.icon, task.state, look.text ? tr(look.text) : QString());
    if (running) {
        ShowActivity();
    } else {
        m_meter = {};
        SetStatusText(tr("Next Run: ") + task.nextRun);
        SetProgress(0);
    }
    SetBodyText(task.lastRun.isEmpty()
                    ? TaskTypeName(task.type)
                    : tr("%1  \u00B7  Last run %2").arg(TaskTypeName(task.type), task.lastRun));
    if (IsActionEnabled(m_startOrPause))
        ShowStartAction(running);
}

void CTaskManItem::ShowActivity() {
    const TaskActivity& activity = m_task.activity;
    const TransferProgress transfers = m_meter.Sample(activity.running, activity.at);
    SetStatusText(transfers.done + transfers.left > 0 ? TransferText(transfers) : tr("Running"));
    if (!activity.counts.total || !activity.counts.processed)
        return;
    const quint32 total = std::max(*activity.counts.total, 1u);
    const quint32 processed = std::min(*activity.counts.processed, total);
    SetProgress(static_cast<int>(quint64(1000) * processed / total));
}

void CTaskManItem::ShowStartAction(bool running) {
    m_pauses = running;
    SetAction(m_startOrPause, running ? tr("Pause") : tr("Start Now"), running ? PauseIcon : StartIcon);
}

void CTaskManItem::StartOrPause() {
    const bool pauses = m_pauses;
    const TaskCommand command = pauses ? &ServiceClient::PauseTask : &ServiceClient::StartTaskNow;
    CommandOrder order;
    order.send = [command, id = m_task.id](const ServiceClient& service, std::stop_token stop) {
        return (service.*command)(id, stop);
    };
    order.after = [this, pauses](bool done) {
        if (done)
            ShowStartAction(!pauses);
    };
    m_commands->Run(StartOrPauseKey, order);
}

void CTaskManItem::Cancel() {
    CommandOrder order = CancelTaskOrder(m_task.id);
    order.isStillMeant = [this, id = m_task.id] { return id == m_task.id; };
    order.after = [this](bool) { emit Deleted(); };
    m_commands->Run(CancelKey, order);
}

void CTaskManItem::ShowBusy() {
    EnableAction(m_startOrPause, !m_commands->IsBusy(StartOrPauseKey));
    EnableAction(m_cancel, !m_commands->IsBusy(CancelKey));
}

void CTaskManItem::OnExpanded() {
    if (!m_summary)
        MakeViews();
    CTaskItem::OnExpanded();
}

void CTaskManItem::Reload() {
    if (Content())
        Content()->Reload();
}

void CTaskManItem::MakeViews() {
    auto* tabs = new CTabPanel(m_console);
    m_summary = new CTaskSummary(m_console, m_task.id, m_task.type);
    connect(m_summary, &CTaskSummary::Deleted, this, &CTaskManItem::Deleted);
    tabs->AddTab(tr("Summary"), m_summary, SummaryIcon);
    const auto add = [&](const QString& title, int image, std::function<ListTable(const TaskRow&)> tableOf) {
        m_views.push_back({new CRecordPanel(m_console, tableOf(m_task)), std::move(tableOf)});
        tabs->AddTab(title, m_views.back().panel, image);
    };
    add(tr("Running"), SystemActivitiesIcon,
        [&counters = m_console.counters](const TaskRow& task) { return RunningTable(counters, task); });
    add(tr("Pending"), TaskPendingIcon,
        [](const TaskRow& task) { return SubTaskTable(task, SubtaskView::Pending); });
    add(tr("Pending Retry"), RefreshIcon,
        [](const TaskRow& task) { return SubTaskTable(task, SubtaskView::PendingRetry); });
    add(tr("History"), FileVersionsIcon, HistoryTable);
    add(tr("Trace"), TraceIcon, TraceTable);
    SetContent(tabs);
}
