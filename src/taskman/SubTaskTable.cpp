#include "taskman/SubTaskTable.h"

#include "list/RecordPanel.h"
#include "list/RecordTable.h"
#include "look/Formatters.h"
#include "look/IconRegistry.h"
#include "stores/SubTaskStore.h"
#include "stores/TaskState.h"
#include "taskman/SubTaskText.h"
#include "taskman/TaskList.h"

namespace {

using SubTask = SubTaskRecord;

RecordPage PageOf(const TaskRow& task, bool retry) {
    return {.name = retry ? CRecordPanel::tr("Pending Retry") : CRecordPanel::tr("Pending"),
            .widths = QStringLiteral("Subtasks"),
            .status = CRecordPanel::tr("View the pending subtasks. They'll be processed later."),
            .empty = CRecordPanel::tr("No Subtask found."),
            .failure = CRecordPanel::tr("Failed to get subtask list, refresh later"),
            .period = std::chrono::seconds(5),
            .subject = task.id};
}

QString DirectionCell(const SubTask& record) {
    switch (DirectionOfSubTask(record.text1)) {
    case TransferDirection::Upload:
        return Cell::ActivityIcon(UploadIcon, QStringLiteral("Uploading"));
    case TransferDirection::Download:
        return Cell::ActivityIcon(DownloadIcon, QStringLiteral("Downloading"));
    case TransferDirection::None:
        break;
    }
    return {};
}

QString SizeCell(const SubTask& record) {
    return FormatSize(static_cast<quint64>(std::max<qint64>(record.number5, 0)));
}

RowCommand Deletion(const QString& taskId) {
    return DeleteCommand<SubTask>(
        {.caption = CRecordPanel::tr("Delete"),
         .icon = DeleteIcon,
         .words = CRecordPanel::tr("Click to delete the failed sub-task")},
        {.one = CRecordPanel::tr("Do you really want to remove this sub-task?"),
         .several = CRecordPanel::tr("Do you really want to remove selected sub-tasks?"),
         .failed = CRecordPanel::tr("Failed to delete the subtask")},
        [taskId](const ServiceClient& service, const SubTask& record, const std::stop_token& stop) {
            return service.DeleteSubTask(taskId, record.subTaskNumber, stop);
        });
}

} // namespace

ListTable SubTaskTable(const TaskRow& task, SubtaskView view) {
    const bool retry = view == SubtaskView::PendingRetry;
    const auto stateA = static_cast<int>(retry ? SubTaskState::PendingRetry : SubTaskState::Pending);
    const auto stateB = static_cast<int>(retry ? SubTaskState::Failed : SubTaskState::Pending);
    const auto parameter = [sources = SourcesOf(task.description)](const SubTask& record) {
        return ShownParameter(record.text2, sources);
    };
    return RecordTable<SubTask>{
        .page = PageOf(task, retry),
        .columns = {{.title = {}, .width = 24, .cell = DirectionCell, .name = CRecordPanel::tr("Direction")},
                    {CRecordPanel::tr("Task Name"), 190,
                     [](const SubTask& record) { return SubTaskName(record.text1, record.text2); }},
                    {CRecordPanel::tr("Parameter 1"), 250, parameter},
                    {CRecordPanel::tr("Size"), 80, {SizeCell, &SubTask::number5}, Qt::AlignRight},
                    {CRecordPanel::tr("Note"), 120, &SubTask::text4}},
        // The service gives the numbers of one run to other sub-tasks in the next.
        .id = {&SubTask::subTaskNumber, &SubTask::text1, &SubTask::text2},
        .read =
            [id = task.id, stateA, stateB](RecordStream<SubTask>& rows, std::stop_token stop) {
                const auto put = [&rows](const SubTask& record) {
                    rows.Put(record);
                    return true;
                };
                return EnumSubTasks(id, stateA, stateB, put, std::move(stop));
            },
        .commands = {Deletion(task.id)}};
}
