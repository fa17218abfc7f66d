#include "taskman/TaskList.h"

#include "taskman/TaskClass.h"

#include <QHash>

namespace {

bool IsShown(TaskFilter filter, const TaskRecord& task) {
    const bool completed = task.state == TaskState::Completed;
    const bool system = ClassifyTask(task.kind, task.name).system;
    return filter == TaskFilter::All || (system == (filter == TaskFilter::SystemTasks) &&
                                         completed == (filter == TaskFilter::CompletedUserTasks));
}

void AddActivity(std::vector<TaskRow>& rows, const LiveCounters& counters) {
    QHash<QString, TaskActivity*> running;
    const auto now = std::chrono::steady_clock::now();
    for (TaskRow& row : rows) {
        if (row.state != TaskState::Running)
            continue;
        row.activity.counts = counters.ZEPTraceGetSTaskInfo(row.id);
        row.activity.at = now;
        running.insert(row.id.toCaseFolded(), &row.activity);
    }
    if (running.isEmpty())
        return;
    counters.ZEPEnumTasksWithCallBackEx({}, [&running](const RunningSubTask& subTask) {
        if (TaskActivity* activity = running.value(subTask.taskId.toCaseFolded()))
            activity->running.push_back(subTask);
        return true;
    });
}

} // namespace

TaskChoice ChosenBy(TaskFilter filter) {
    return [filter](const TaskRecord& task) { return IsShown(filter, task); };
}

CardEntries ReadTaskList(const TaskChoice& isListed, const LiveCounters& counters, std::stop_token stop) {
    std::vector<TaskRow> rows;
    ReadResult read = EnumAllTasks(
        [&](const TaskRecord& task) {
            if (isListed(task))
                rows.push_back({{task.taskId, task.name, {}, static_cast<int>(task.state)},
                                task.kind,
                                task.description,
                                task.lastRun,
                                task.nextRun,
                                task.state,
                                task.schedule});
            return true;
        },
        stop);
    AddActivity(rows, counters);
    return CardEntries::Of(std::move(read), std::move(rows));
}
