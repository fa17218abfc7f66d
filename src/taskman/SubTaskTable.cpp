#include "taskman/SubTaskTable.h"

#include "list/RecordPanel.h"
#include "list/RecordTable.h"
#include "look/Formatters.h"
#include "look/IconRegistry.h"
#include "stores/SubTaskStore.h"
#include "stores/TaskState.h"
#include "taskman/SubTaskText.h"
#include "taskman/TaskList.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using SubTask = SubTaskRecord;

RecordPage PageOf(const TaskRow& task, bool retry) {
    return {.name = retry ? RecordPanel::tr("Pending Retry") : RecordPanel::tr("Pending"),
            .widths = u"Subtasks"_s,
            .status = RecordPanel::tr("View the pending subtasks. They'll be processed later."),
            .empty = RecordPanel::tr("No Subtask found."),
            .failure = RecordPanel::tr("Failed to get subtask list, refresh later"),
            .period = std::chrono::seconds(5),
            .subject = task.id};
}

QString DirectionCell(const SubTask& record) {
    switch (DirectionOfSubTask(record.text1)) {
    case TransferDirection::Upload:
        return Cell::ActivityIcon(UploadIcon, u"Uploading"_s);
    case TransferDirection::Download:
        return Cell::ActivityIcon(DownloadIcon, u"Downloading"_s);
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
        {.caption = RecordPanel::tr("Delete"),
         .icon = DeleteIcon,
         .words = RecordPanel::tr("Click to delete the failed sub-task")},
        {.one = RecordPanel::tr("Do you really want to remove this sub-task?"),
         .several = RecordPanel::tr("Do you really want to remove selected sub-tasks?"),
         .failed = RecordPanel::tr("Failed to delete the subtask")},
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
        .columns = {{.title = {}, .width = 24, .cell = DirectionCell, .name = RecordPanel::tr("Direction")},
                    {RecordPanel::tr("Task Name"), 190,
                     [](const SubTask& record) { return SubTaskName(record.text1, record.text2); }},
                    {RecordPanel::tr("Parameter 1"), 250, parameter},
                    {RecordPanel::tr("Size"), 80, {SizeCell, &SubTask::number5}, Qt::AlignRight},
                    {RecordPanel::tr("Note"), 120, &SubTask::text4}},
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
