#include "taskman/CompletedTable.h"

#include "list/RecordPanel.h"
#include "list/RecordTable.h"
#include "look/IconRegistry.h"
#include "stores/SchedulerStore.h"
#include "stores/TaskState.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct CompletedTask {
    QString id;
    QString name;
    QString lastRun;

    friend bool operator==(const CompletedTask&, const CompletedTask&) = default;
};

RowCommand Deletion() {
    return DeleteCommand<CompletedTask>(
        {.caption = RecordPanel::tr("Delete"),
         .icon = DeleteIcon,
         .words = RecordPanel::tr("Click to delete the task")},
        {.one = RecordPanel::tr("Do you really want to delete the task?"),
         .several = RecordPanel::tr("Do you really want to remove the selected tasks?"),
         .failed = RecordPanel::tr("Failed to delete the task")},
        [](const ServiceClient& service, const CompletedTask& task, const std::stop_token& stop) {
            return service.DeleteTask(task.id, stop);
        });
}

} // namespace

ListTable CompletedTable() {
    return RecordTable<CompletedTask>{
        .page = {.name = RecordPanel::tr("Completed Tasks"),
                 .widths = u"CompletedTasks"_s,
                 .status = RecordPanel::tr("Manage completed tasks."),
                 .empty = RecordPanel::tr("No task found."),
                 .period = std::chrono::seconds(5),
                 .reload = RecordPanel::tr("Refresh...")},
        .columns = {{RecordPanel::tr("Task Name"), 340, &CompletedTask::name},
                    {RecordPanel::tr("Last Run Time"), 160, &CompletedTask::lastRun}},
        .id = {&CompletedTask::id},
        .read =
            [](RecordStream<CompletedTask>& rows, std::stop_token stop) {
                const auto put = [&rows](const TaskRecord& task) {
                    if (task.state == TaskState::Completed)
                        rows.Put({task.taskId, task.name, task.lastRun});
                    return true;
                };
                return EnumAllTasks(put, std::move(stop));
            },
        .commands = {Deletion()}};
}
