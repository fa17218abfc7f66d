#include "taskman/TaskManItem.h"

#include "list/RecordPanel.h"
#include "look/IconRegistry.h"
#include "page/TabPanel.h"
#include "taskman/HistoryTable.h"
#include "taskman/RunningTable.h"
#include "taskman/SubTaskTable.h"
#include "taskman/TaskClass.h"
#include "taskman/TaskCommands.h"
#include "taskman/TaskFacts.h"
#include "taskman/TaskManSummary.h"
#include "taskman/TraceTable.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

QString Title(const char* text) {
    return QCoreApplication::translate("CTaskManItem", text);
}

} // namespace

TaskCardView TableView(const QString& title, int image, std::function<ListTable(const TaskRow&)> tableOf) {
    return {title, image,
            [tableOf = std::move(tableOf)](const Console& console, const TaskRow& task) -> TaskView {
                auto* panel = new RecordPanel(console, tableOf(task));
                return {panel, [panel, tableOf](const TaskRow& turned) { panel->Turn(tableOf(turned)); }};
            }};
}

TaskCardView RunningView(const LiveCounters& counters) {
    return TableView(Title(QT_TRANSLATE_NOOP("CTaskManItem", "Running")), SystemActivitiesIcon,
                     [&counters](const TaskRow& task) { return RunningTable(counters, task); });
}

TaskCardView PendingView() {
    return TableView(Title(QT_TRANSLATE_NOOP("CTaskManItem", "Pending")), TaskPendingIcon,
                     [](const TaskRow& task) { return SubTaskTable(task, SubtaskView::Pending); });
}

TaskCardView PendingRetryView() {
    return TableView(Title(QT_TRANSLATE_NOOP("CTaskManItem", "Pending Retry")), RefreshIcon,
                     [](const TaskRow& task) { return SubTaskTable(task, SubtaskView::PendingRetry); });
}

TaskCardView HistoryView() {
    return TableView(Title(QT_TRANSLATE_NOOP("CTaskManItem", "History")), FileVersionsIcon, HistoryTable);
}

TaskCardView TraceView() {
    return TableView(Title(QT_TRANSLATE_NOOP("CTaskManItem", "Trace")), TraceIcon, TraceTable);
}

TaskCardPlan TaskManCard(const LiveCounters& counters) {
    return {[](const TaskRow& task) { return TaskKindText(task.type, task.title); },
            TaskManSummary(),
            {RunningView(counters), PendingView(), PendingRetryView(), HistoryView(), TraceView()}};
}

CTaskManItem::CTaskManItem(const Console& console, CommandRunner& commands, const TaskRow& task,
                           TaskCardPlan plan)
    : CTaskItem(task.title), m_console(console), m_commands(commands), m_task(task), m_plan(std::move(plan)),
      m_cancel(AddAction(TaskActionCaption(TaskAction::Cancel), TaskActionImage(TaskAction::Cancel),
                         [this] { Run(TaskAction::Cancel); })),
      m_startOrPause(AddAction({}, 0, [this] { Run(m_offered); })) {
    connect(&commands, &CommandRunner::BusyChanged, this, &CTaskManItem::ShowBusy);
}

void CTaskManItem::Offer(TaskAction action) {
    m_offered = action;
    SetAction(m_startOrPause, TaskActionCaption(action), TaskActionImage(action));
    ShowBusy();
}

void CTaskManItem::Update(const TaskRow& task) {
    if (task.id != m_task.id)
        m_meter = {};
    if (task.id != m_task.id || task.state != m_task.state || task.lastRun != m_task.lastRun)
        SetFailure({}); // what was not done then says nothing of the task now
    m_task = task;
    if (m_summary)
        m_summary->SetTask(task);
    for (const TaskView& view : m_views)
        view.turn(task);
    ShowStatus();
    const QString kind = m_plan.kind(task);
    SetBodyText(task.lastRun.isEmpty() ? kind : tr("%1  \u00B7  Last run %2").arg(kind, task.lastRun));
    Offer(task.state == TaskState::Running ? TaskAction::Pause : TaskAction::StartNow);
    OnUpdated();
}

void CTaskManItem::ShowStatus() {
    const bool running = m_task.state == TaskState::Running;
    SetStatusIcon(QLatin1String(MeaningOf(m_task.state).icon), static_cast<int>(m_task.state),
                  TaskStateText(m_task.state));
    const QString activity = running ? ActivityText() : QString();
    if (!running)
        m_meter = {};
    SetStatusText(running                    ? activity
                  : m_task.nextRun.isEmpty() ? tr("Next Run: ") + tr("not scheduled")
                                             : tr("Next Run: ") + m_task.nextRun);
    SetProgress(running ? ProgressOf(m_task.activity.counts).value_or(Progress()) : 0);
}

QString CTaskManItem::ActivityText() {
    const TransferProgress transfers = m_meter.Sample(m_task.activity.running, m_task.activity.at);
    return transfers.done + transfers.left > 0 ? TransferText(transfers) : TaskStateText(TaskState::Running);
}

void CTaskManItem::Run(TaskAction action) {
    CommandOrder order = TaskOrder(action, m_task.id, m_task.title);
    const auto isSame = [card = QPointer(this), id = m_task.id] { return card && card->m_task.id == id; };
    order.isStillMeant = isSame;
    order.after = [card = QPointer(this), isSame, action](const CommandEnd& end) {
        if (isSame())
            card->EndCommand(action, end);
    };
    m_commands.Run(TaskOrderKey(action, m_task.id), order);
}

void CTaskManItem::EndCommand(TaskAction action, const CommandEnd& end) {
    SetFailure(end ? QString() : TaskNotDone(action) + u": "_s + end.why);
    if (end && (action == TaskAction::StartNow || action == TaskAction::Pause))
        Offer(action == TaskAction::Pause ? TaskAction::StartNow : TaskAction::Pause);
    ShowStatus();
    emit Commanded();
}

void CTaskManItem::ShowBusy() {
    EnableAction(m_startOrPause, !m_commands.IsBusy(TaskOrderKey(m_offered, m_task.id)));
    EnableAction(m_cancel, !m_commands.IsBusy(TaskOrderKey(TaskAction::Cancel, m_task.id)));
}

void CTaskManItem::OnExpanded() {
    if (!m_summary)
        MakeViews();
    CTaskItem::OnExpanded();
}

void CTaskManItem::MakeViews() {
    auto* tabs = new CTabPanel(m_console);
    m_summary = new CTaskSummary(m_console, m_task, m_plan.summary, &m_commands);
    connect(m_summary, &CTaskSummary::Commanded, this, &CTaskManItem::EndCommand);
    tabs->AddTab(tr("Summary"), m_summary, SummaryIcon);
    for (const TaskCardView& view : m_plan.views) {
        m_views.push_back(view.make(m_console, m_task));
        tabs->AddTab(view.title, m_views.back().panel, view.image);
    }
    FinishViews(*tabs);
    SetContent(tabs);
}
