#pragma once

#include "cards/TaskItem.h"
#include "taskman/TaskCommands.h"
#include "taskman/TaskList.h"
#include "taskman/TransferMeter.h"

struct Console;
struct ListTable;

class CRecordPanel;
class CTaskSummary;

/// The card of a task. Its commands go to the task that it shows at the click.
class CTaskManItem : public CTaskItem {
    Q_OBJECT

public:
    CTaskManItem(const Console& console, const TaskRow& task);

    const QString& TaskId() const { return m_task.id; }
    /// Shows the task as it was read, and commands this one from now on.
    void Update(const TaskRow& task);

    void OnExpanded() override;
    /// Goes to the view that is shown in the expanded card.
    void Reload();

signals:
    /// The deletion was sent, answered or not: what the list shows may be out of date.
    void Deleted();

private:
    struct View {
        CRecordPanel* panel;
        std::function<ListTable(const TaskRow&)> tableOf;
    };

    void MakeViews();
    void ShowActivity();
    void StartOrPause();
    void Cancel();
    void ShowBusy();
    void ShowStartAction(bool running);

    const Console& m_console;
    TaskRow m_task;
    TransferMeter m_meter;
    CTaskSummary* m_summary = nullptr; ///< this and the other views are made when the card is first expanded
    std::vector<View> m_views;
    int m_cancel;
    int m_startOrPause;
    bool m_pauses = false; ///< what the button does now
    CommandRunner* m_commands;
};
