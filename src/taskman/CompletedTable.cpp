#include "taskman/CompletedTable.h"

#include "list/RecordPanel.h"
#include "list/RecordTable.h"
#include "look/IconRegistry.h"
#include "stores/SchedulerStore.h"
#include "stores/TaskState.h"

namespace {

struct CompletedTask {
    QString id;
    QString name;
    QString lastRun;

    friend bool operator==(const CompletedTask&, const CompletedTask&) = default;
};

RowCommand Deletion() {
    return DeleteCommand<CompletedTask>(
        {.caption = CRecordPanel::tr("Delete"),
         .icon = DeleteIcon,
         .words = CRecordPanel::tr("Click to delete the task")},
        {.one = CRecordPanel::tr("Do you really want to delete the task?"),
         .several = CRecordPanel::tr("Do you really want to remove the selected tasks?"),
         .failed = CRecordPanel::tr("Failed to delete the task")},
        [](const ServiceClient& service, const CompletedTask& task, const std::stop_token& stop) {
            return service.DeleteTask(task.id, stop);
        });
}

} // namespace

ListTable CompletedTable() {
    return RecordTable<CompletedTask>{
        .page = {.name = CRecordPanel::tr("Completed Tasks"),
                 .widths = QStringLiteral("CompletedTasks"),
                 .status = CRecordPanel::tr("Manage completed tasks."),
                 .empty = CRecordPanel::tr("No task found."),
                 .period = std::chrono::seconds(5),
                 .reload = CRecordPanel::tr("Refresh...")},
        .columns = {{CRecordPanel::tr("Task Name"), 340, &CompletedTask::name},
                    {CRecordPanel::tr("Last Run Time"), 160, &CompletedTask::lastRun}},
        .id = {&CompletedTask::id},
        .read =
            [](RecordStream<CompletedTask>& rows, std::stop_token stop) {
                const auto put = [&rows](const TaskRecord& task) {
                    if (task.state == static_cast<int>(TaskState::Completed))
                        rows.Put({task.taskId, task.name, task.lastRun});
                    return true;
                };
                return EnumAllTasks(put, std::move(stop));
            },
        .commands = {Deletion()}};
}
