#pragma once

#include "cards/TaskItem.h"
#include "list/RecordTable.h"
#include "taskman/TaskSummary.h"
#include "taskman/TransferMeter.h"

class CTabPanel;

/// What stands behind a tab of an expanded card. The tabs own the panel.
struct TaskView {
    CBrenPanel* panel;
    std::function<void(const TaskRow&)> turn; ///< to the card's task as it was read again, or another one
};

struct TaskCardView {
    QString title;
    int image;
    std::function<TaskView(const Console&, const TaskRow&)> make;
};

/// A record table of the card's task.
TaskCardView TableView(const QString& title, int image, std::function<ListTable(const TaskRow&)> tableOf);

TaskCardView RunningView(const LiveCounters& counters);
TaskCardView PendingView();
TaskCardView PendingRetryView();
TaskCardView HistoryView();
TaskCardView TraceView();

/// All that one kind of card of a task has of its own.
struct TaskCardPlan {
    std::function<QString(const TaskRow&)> kind; ///< what the task is, in words
    TaskSummaryPlan summary;
    std::vector<TaskCardView> views; ///< behind the summary
};

TaskCardPlan TaskManCard(const LiveCounters& counters);

/// The card of a task. Its commands go to the task that it shows at the click.
class CTaskManItem : public CTaskItem {
    Q_OBJECT

public:
    /// `commands` are those of its list.
    CTaskManItem(const Console& console, CommandRunner& commands, const TaskRow& task, TaskCardPlan plan);

    const QString& TaskId() const { return m_task.id; }
    /// Shows the task as it was read, and commands this one from now on.
    void Update(const TaskRow& task);

    void OnExpanded() override;

signals:
    /// A command has ended, answered or not: what is shown may be out of date.
    void Commanded();

protected:
    /// Adds to what the expanded card shows, before it is shown first.
    virtual void FinishViews(CTabPanel& tabs) { Q_UNUSED(tabs) }
    /// The task was read again, and all that is said of it here is shown.
    virtual void OnUpdated() {}
    const TaskRow& Task() const { return m_task; }
    const Console& TheConsole() const { return m_console; }

private:
    void MakeViews();
    void ShowStatus();
    QString ActivityText();
    void Run(TaskAction action);
    void EndCommand(TaskAction action, const CommandEnd& end);
    void ShowBusy();
    void Offer(TaskAction action);

    const Console& m_console;
    CommandRunner& m_commands;
    TaskRow m_task;
    TaskCardPlan m_plan;
    TransferMeter m_meter;
    CTaskSummary* m_summary = nullptr; ///< this and the other views are made when the card is first expanded
    std::vector<TaskView> m_views;
    int m_cancel;
    int m_startOrPause;
    TaskAction m_offered = TaskAction::StartNow; ///< by the button for both
};
