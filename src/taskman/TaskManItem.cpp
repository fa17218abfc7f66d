#include "taskman/TaskManItem.h"

#include "stores/TaskState.h"
#include "taskman/TaskClass.h"
#include "taskman/TaskSummary.h"
#include "ui/Console.h"
#include "ui/IconRegistry.h"
#include "ui/TabPanel.h"
#include "ui/UserPrompts.h"

namespace {

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
    case TaskState::Held:
        break;
    }
    return {TaskPendingIcon, QT_TRANSLATE_NOOP("CTaskManItem", "Pending")};
}

} // namespace

CTaskManItem::CTaskManItem(const Console& console, const TaskRow& task)
    : CTaskItem(task.name), m_console(console), m_task(task),
      m_cancel(AddAction(tr("Cancel Task"), CancelTaskIcon, [this] { Cancel(); })),
      m_startOrPause(AddAction(tr("Start Now"), StartIcon, [this] { StartOrPause(); })),
      m_loader(console.reader, *this) {}

void CTaskManItem::Update(const TaskRow& task) {
    m_task = task;
    if (m_summary)
        m_summary->SetTask(task.id, task.type);
    const bool running = task.state == static_cast<int>(TaskState::Running);
    const StateLook look = LookOf(task.state);
    SetStatusIcon(look.icon, task.state, tr(look.text));
    SetStatusText(running ? tr(look.text) : tr("Next Run: ") + task.nextRun);
    SetBodyText(task.lastRun.isEmpty()
                    ? TaskTypeName(task.type)
                    : tr("%1  \u00B7  Last run %2").arg(TaskTypeName(task.type), task.lastRun));
    if (IsActionEnabled(m_startOrPause))
        ShowStartAction(running);
}

void CTaskManItem::ShowStartAction(bool running) {
    m_pauses = running;
    SetAction(m_startOrPause, running ? tr("Pause") : tr("Start Now"), running ? PauseIcon : StartIcon);
}

void CTaskManItem::StartOrPause() {
    const bool pauses = m_pauses;
    Send(pauses ? &ServiceClient::PauseTask : &ServiceClient::StartTaskNow, m_task.id, m_startOrPause,
         [this, pauses](bool answered) {
             if (answered)
                 ShowStartAction(!pauses);
         });
}

void CTaskManItem::Cancel() {
    const auto onAnswer = [this, id = m_task.id](bool yes) {
        if (yes)
            Send(&ServiceClient::DeleteTask, id, m_cancel, [this](bool) { emit Deleted(); });
    };
    m_console.prompts.AskYesNo(this, tr("Do you really want to cancel the task?"), onAnswer);
}

void CTaskManItem::Send(TaskCommand command, const QString& taskId, int action,
                        std::function<void(bool answered)> done) {
    if (taskId != m_task.id)
        return;
    EnableAction(action, false);
    SendTaskCommand(m_loader, m_console.service, command, taskId,
                    [this, action, done = std::move(done)](bool answered) {
                        EnableAction(action, true);
                        done(answered);
                    });
}

void CTaskManItem::OnExpanded() {
    if (!m_summary) {
        m_summary = new CTaskSummary(m_console, m_task.id, m_task.type);
        connect(m_summary, &CTaskSummary::Deleted, this, &CTaskManItem::Deleted);
        auto* views = new CTabPanel(m_console.frame);
        views->AddTab(tr("Summary"), m_summary, SummaryIcon);
        SetContent(views);
    }
    CTaskItem::OnExpanded();
}
