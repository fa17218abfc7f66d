#include "taskman/HistoryTable.h"

#include "list/RecordPanel.h"
#include "list/RecordTable.h"
#include "look/IconRegistry.h"
#include "page/Console.h"
#include "page/SectionLinks.h"
#include "stores/ProcessLogStore.h"
#include "taskman/TaskList.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// What was traced from the first of the runs to the last.
void ShowTraces(const RecordView& view, const std::vector<TakenRow>& rows) {
    const auto& show = view.TheConsole().links.showTraces;
    QStringList times;
    for (const TakenRow& row : rows) {
        const auto& run = RecordOf<ProcessLogRecord>(row);
        times << run.startTime << run.stopTime;
    }
    times.removeAll(QString());
    const auto [from, to] = std::minmax_element(times.cbegin(), times.cend());
    if (show && !times.isEmpty())
        show(*from, *to);
}

} // namespace

ListTable HistoryTable(const TaskRow& task) {
    using Run = ProcessLogRecord;
    return RecordTable<Run>{
        .page = {.name = RecordPanel::tr("History"),
                 .widths = u"History"_s,
                 .status = RecordPanel::tr("View the completion status of previous backups."),
                 .empty = RecordPanel::tr("No History Record Found"),
                 .period = std::chrono::seconds(5),
                 .subject = task.id},
        .columns =
            {{.title = RecordPanel::tr("Start Time"), .width = 150, .cell = &Run::startTime, .least = 126},
             {.title = RecordPanel::tr("Stop Time"), .width = 150, .cell = &Run::stopTime, .least = 126},
             {.title = RecordPanel::tr("Stop Reason"), .width = 250, .cell = &Run::stopReason, .least = 142},
             {RecordPanel::tr("Total Subtasks"), 200, &Run::totalSubTasks},
             {RecordPanel::tr("Failed Subtasks"), 200, &Run::failedSubTasks},
             {RecordPanel::tr("Processed Subtasks"), 200, &Run::processedSubTasks}},
        .id = {&Run::startTime, &Run::stopTime},
        .read =
            [id = task.id](RecordStream<Run>& rows, std::stop_token stop) {
                std::vector<Run> runs;
                ReadResult read = FillProcessLog(id, runs, std::move(stop));
                rows.PutAll(std::move(runs));
                return read;
            },
        .commands = {{.caption = RecordPanel::tr("Show Traces of These Times"),
                      .icon = TraceIcon,
                      .words = RecordPanel::tr("Click to see what was traced"),
                      .run = ShowTraces}}};
}
