#include "taskman/TaskManSummary.h"

#include "taskman/TaskClass.h"
#include "taskman/TaskCommands.h"

using namespace Qt::Literals::StringLiterals;

namespace {

std::optional<QString> StatusDetail(TaskState state, const SubTaskCounts& counts) {
    const bool progresses = state == TaskState::Running && counts.total;
    return progresses ? ProgressText(counts) : StateDetail(state);
}

std::vector<SummaryRow> RowsOf(const TaskRow& task, const TaskFacts& facts) {
    const TaskInfo& info = facts.lookup.task;
    const SummaryRow gap{{}, QString()};
    const auto known = [&](const std::optional<QString>& detail) { return IfFound(facts.lookup, detail); };
    return {
        {CTaskSummary::tr("Task Type"), TaskTypeName(task.type)},
        {CTaskSummary::tr("Status"), known(StatusDetail(info.state, facts.counts))},
        gap,
        {CTaskSummary::tr("Pending Subtasks"), PendingText(facts.counts)},
        {CTaskSummary::tr("Completed Subtasks"), CompletedText(facts.counts)},
        {CTaskSummary::tr("Pending Retry Subtasks"), CountText(facts.counts.pendingRetry)},
        {CTaskSummary::tr("Running Subtasks"), CountText(facts.counts.running)},
        gap,
        {CTaskSummary::tr("Recurring"),
         known(info.weekdays.letters.isEmpty() ? CTaskSummary::tr("Not a Recurring Task")
                                               : info.weekdays.letters)},
        {CTaskSummary::tr("Last Run Time"), known(info.lastRun)},
        {CTaskSummary::tr("Next Start Time"), known(NextStart(info, CTaskSummary::tr("NA")))},
    };
}

std::vector<TaskButton> ButtonsOf(TaskState state) {
    if (TaskStateText(state).isEmpty())
        return {};
    std::vector<TaskButton> buttons;
    for (const TaskAction action : MeaningOf(state).actions)
        buttons.push_back({action, TaskActionCaption(action)});
    buttons.push_back({{}, CTaskSummary::tr("Refresh")});
    return buttons;
}

} // namespace

TaskSummaryPlan TaskManSummary() {
    return {
        CTaskSummary::tr("View summary information for this task. Click on a different task to change views. "
                         "Note the actions above (Start, Pause, Cancel, Refresh)."),
        u"TaskSummary"_s, RowsOf, ButtonsOf};
}
