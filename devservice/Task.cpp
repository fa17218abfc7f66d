#include "devservice/Task.h"

#include <algorithm>
#include <utility>

namespace devservice {

const SubTask* Task::Find(int subTaskNumber) const {
    const auto found =
        std::lower_bound(subTasks.begin(), subTasks.end(), subTaskNumber,
                         [](const SubTask& subTask, int number) { return subTask.number < number; });
    return found != subTasks.end() && found->number == subTaskNumber ? &*found : nullptr;
}

SubTask* Task::Find(int subTaskNumber) {
    return const_cast<SubTask*>(std::as_const(*this).Find(subTaskNumber));
}

std::string TaskTrace(const std::string& taskId, const std::string& message) {
    return "$$" + taskId + "$ " + message;
}

Task MakeTask(const std::string& id, const std::string& name, const std::string& type, TaskState state) {
    Task task;
    task.id = id;
    task.name = name;
    task.type = type;
    task.state = state;
    task.created = MakeTime(2025, 3, 1, 8);
    task.schedule = {ScheduleKind::Backup, ScheduleMode::Daily, MakeTime(2025, 3, 1, 21)};
    task.nextRun = MakeTime(2025, 3, 4, 21);
    return task;
}

SubTask MakeSubTask(int number, const std::string& type, const std::string& parameter1, int64_t size,
                    SubTaskState state) {
    SubTask subTask;
    subTask.number = number;
    subTask.type = type;
    subTask.parameter1 = parameter1;
    subTask.size = size;
    subTask.state = state;
    return subTask;
}

} // namespace devservice
