#pragma once

#include "cards/TaskItem.h"
#include "taskman/TaskCommands.h"
#include "taskman/TaskList.h"
#include "taskman/TransferMeter.h"

struct ListTable;

class RecordPanel;
class CTaskSummary;

/// The card of a task. Its commands go to the task that it shows at the click.
class CTaskManItem : public CTaskItem {
    Q_OBJECT

public:
    /// `commands` are those of its list.
    CTaskManItem(const Console& console, CommandRunner& commands, const TaskRow& task);

    const QString& TaskId() const { return m_task.id; }
    /// Shows the task as it was read, and commands this one from now on.
    void Update(const TaskRow& task);

    void OnExpanded() override;

signals:
    /// A command has ended, answered or not: what is shown may be out of date.
    void Commanded();

private:
    struct View {
        RecordPanel* panel;
        std::function<ListTable(const TaskRow&)> tableOf;
    };

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
    TransferMeter m_meter;
    CTaskSummary* m_summary = nullptr; ///< this and the other views are made when the card is first expanded
    std::vector<View> m_views;
    int m_cancel;
    int m_startOrPause;
    TaskAction m_offered = TaskAction::StartNow; ///< by the button for both
};
