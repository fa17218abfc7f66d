#include "taskman/RunningTable.h"

#include "list/RecordPanel.h"
#include "list/RecordTable.h"
#include "taskman/RunningText.h"
#include "taskman/TaskList.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using Running = RunningSubTask;

/// Read again when the service's task table has changed.
RecordPage LivePage(const LiveCounters& counters, RecordPage page) {
    page.period = std::chrono::seconds(1);
    page.changes = [&counters] { return counters.ZEPTraceCounterGet(TraceCounter::TaskTable); };
    return page;
}

QString FileCell(const Running& running) {
    return ShownFileName(running.fileName);
}

QString TaskCell(const Running& running) {
    const QString file = FileCell(running);
    return file.isEmpty() ? running.taskName : running.taskName + u": "_s + file;
}

QString StatusCell(const Running& running) {
    if (IsSyncWatcher(running))
        return RecordPanel::tr("Monitoring changes");
    const QString words = OperationWords(running.operation) + u"..."_s;
    return running.status.isEmpty() ? words : words + u' ' + running.status;
}

/// In millionths; -1 where there is nothing to move.
qint64 DoneOf(const Running& running) {
    constexpr double steps = 1e6;
    const auto total = static_cast<double>(running.bytesTotal);
    return total == 0 ? -1 : static_cast<qint64>(static_cast<double>(running.bytesDone) / total * steps);
}

RecordColumn<Running> CompletionColumn(int width) {
    const auto bar = [](const Running& running) {
        return Cell::Progress(running.bytesDone, running.bytesTotal);
    };
    return {RecordPanel::tr("Completion"), width, {bar, DoneOf}};
}

RowId<Running> Id() {
    return {&Running::taskId, &Running::operation, &Running::fileName, &Running::target};
}

/// Of one task, or of all when `taskId` is empty.
ReadResult Read(const LiveCounters& counters, const QString& taskId, RecordStream<Running>& rows) {
    const bool told = counters.ZEPEnumTasksWithCallBackEx(taskId, [&](const Running& running) {
        if (taskId.isEmpty() || !IsSyncWatcher(running))
            rows.Put(running);
        return true;
    });
    return told ? ReadResult() : ReadResult{ReadOutcome::Unavailable, {}};
}

} // namespace

ListTable RunningTable(const LiveCounters& counters, const TaskRow& task) {
    return RecordTable<Running>{
        .page = LivePage(
            counters, {.name = RecordPanel::tr("Running"),
                       .widths = u"RunningSubtasks"_s,
                       .status = RecordPanel::tr("Check the progress of your currently processing sub-tasks"),
                       .empty = RecordPanel::tr("No subtask is being processed."),
                       .subject = task.id}),
        .columns = {{.title = {},
                     .width = 24,
                     .cell = [](const Running& running) { return OperationCell(running.operation); },
                     .name = RecordPanel::tr("Direction")},
                    {RecordPanel::tr("File Name"), 200, FileCell},
                    {RecordPanel::tr("Target"), 250, &Running::target},
                    CompletionColumn(170)},
        .id = Id(),
        .read = [id = task.id, &counters](RecordStream<Running>& rows, const std::stop_token&) {
            return Read(counters, id, rows);
        }};
}

ListTable SystemActivityTable(const LiveCounters& counters) {
    return RecordTable<Running>{
        .page = LivePage(counters, {.name = RecordPanel::tr("System Activities"),
                                    .widths = u"SystemActivities"_s,
                                    .status = RecordPanel::tr("View current system activities."),
                                    .empty = RecordPanel::tr("System is idle.")}),
        .columns = {{RecordPanel::tr("Task"), 268, TaskCell},
                    {RecordPanel::tr("Target"), 222, &Running::target},
                    {RecordPanel::tr("Status"), 122, StatusCell},
                    CompletionColumn(150)},
        .id = Id(),
        .read = [&counters](RecordStream<Running>& rows, const std::stop_token&) {
            return Read(counters, {}, rows);
        }};
}
