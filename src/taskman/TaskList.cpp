#include "taskman/TaskList.h"

#include "stores/SchedulerStore.h"
#include "stores/TaskState.h"
#include "taskman/TaskClass.h"

bool IsShown(TaskFilter filter, const QString& type, const QString& name, int state) {
    const bool completed = state == static_cast<int>(TaskState::Completed);
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

TaskList ReadTaskList(TaskFilter filter, std::stop_token stop) {
    TaskList list;
    list.read = EnumAllTasks(
        [&](const TaskRecord& task) {
            if (IsShown(filter, task.kind, task.name, task.state))
                list.rows.push_back({task.taskId, task.kind, task.name, task.description, task.lastRun,
                                     task.nextRun, task.state});
            return true;
        },
        stop);
    return list;
}
