#include "taskman/HistoryTable.h"

#include "list/RecordPanel.h"
#include "list/RecordTable.h"
#include "stores/ProcessLogStore.h"
#include "taskman/TaskList.h"

ListTable HistoryTable(const TaskRow& task) {
    using Run = ProcessLogRecord;
    return RecordTable<Run>{
        .page = {.name = CRecordPanel::tr("History"),
                 .widths = QStringLiteral("History"),
                 .status = CRecordPanel::tr("View the completion status of previous backups."),
                 .empty = CRecordPanel::tr("No History Record Found"),
                 .period = std::chrono::seconds(5),
                 .subject = task.id},
        .columns =
            {{.title = CRecordPanel::tr("Start Time"), .width = 150, .cell = &Run::startTime, .least = 126},
             {.title = CRecordPanel::tr("Stop Time"), .width = 150, .cell = &Run::stopTime, .least = 126},
             {CRecordPanel::tr("Stop Reason"), 250, &Run::stopReason},
             {CRecordPanel::tr("Total Subtasks"), 200, &Run::totalSubTasks},
             {CRecordPanel::tr("Failed Subtasks"), 200, &Run::failedSubTasks},
             {CRecordPanel::tr("Processed Subtasks"), 200, &Run::processedSubTasks}},
        .id = {&Run::startTime, &Run::stopTime},
        .read = [id = task.id](RecordStream<Run>& rows, std::stop_token stop) {
            std::vector<Run> runs;
            const ReadResult read = FillProcessLog(id, runs, std::move(stop));
            rows.PutAll(std::move(runs));
            return read;
        }};
}
