#include "taskman/TaskList.h"

#include "stores/SchedulerStore.h"
#include "taskman/TaskClass.h"

#include <QHash>

bool IsShown(TaskFilter filter, const QString& type, const QString& name, TaskState state) {
    const bool completed = state == TaskState::Completed;
    const bool system = ClassifyTask(type, name).system;
    switch (filter) {
    case TaskFilter::MyTasks:
        return !system && !completed;
    case TaskFilter::CompletedUserTasks:
        return !system && completed;
    case TaskFilter::SystemTasks:
        return system && !completed;
    case TaskFilter::All:
        break;
    }
    return true;
}

namespace {

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

CardEntries ReadTaskList(TaskFilter filter, const LiveCounters& counters, std::stop_token stop) {
    std::vector<TaskRow> rows;
    ReadResult read = EnumAllTasks(
        [&](const TaskRecord& task) {
            if (IsShown(filter, task.kind, task.name, task.state))
                rows.push_back({{task.taskId, task.name, {}, static_cast<int>(task.state)},
                                task.kind,
                                task.description,
                                task.lastRun,
                                task.nextRun,
                                task.state});
            return true;
        },
        stop);
    AddActivity(rows, counters);
    return CardEntries::Of(std::move(read), std::move(rows));
}
