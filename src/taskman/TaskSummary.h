#pragma once

#include "cards/SummaryPanel.h"
#include "page/CommandRunner.h"
#include "taskman/TaskFacts.h"
#include "taskman/TaskList.h"

struct TaskButton {
    std::optional<TaskAction> action; ///< none: reads again
    QString caption;
};

/// All that one kind of summary of a task has of its own.
struct TaskSummaryPlan {
    QString help;
    QString widths; ///< under which the columns' are remembered
    std::function<std::vector<SummaryRow>(const TaskRow&, const TaskFacts&)> rows;
    std::function<std::vector<TaskButton>(TaskState)> buttons;
    CountsRead counts = CountsRead::WhenChanged;
};

/// A look at one task, read again every second: its state, the counts of its sub-tasks, when it ran and runs.
class CTaskSummary : public SummaryPanel {
    Q_OBJECT

public:
    /// Of a card its commands are shared; without one it has its own.
    CTaskSummary(const Console& console, const TaskRow& task, TaskSummaryPlan plan,
                 CommandRunner* commands = nullptr);

    /// Turns to another task.
    void SetTask(const TaskRow& task);

    void Activate() override;
    void Reload() override;

signals:
    /// A command has ended.
    void Commanded(TaskAction action, const CommandEnd& end);

protected:
    void CreatePanel() override;

private:
    void Show(const TaskFacts& facts);
    void ShowToolbar();
    void Run(TaskAction action);

    TaskRow m_task;
    TaskSummaryPlan m_plan;
    TaskFacts m_facts;
};
