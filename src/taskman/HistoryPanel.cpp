#include "taskman/HistoryPanel.h"

#include "list/BrenListCtrl.h"
#include "stores/ProcessLogStore.h"

namespace {

RecordPage Page() {
    RecordPage page;
    page.name = CHistoryPanel::tr("History");
    page.widths = QStringLiteral("History");
    page.status = CHistoryPanel::tr("View the completion status of previous backups.");
    page.empty = CHistoryPanel::tr("No History Record Found");
    page.period = std::chrono::seconds(5);
    return page;
}

/// The log only grows at its end, so a run is known by its place.
ListRow RowOf(qsizetype place, const ProcessLogRecord& run) {
    const auto key = [](int count) { return NumberSortKey(count); };
    return {QString::number(place),
            {run.startTime, run.stopTime, run.stopReason, QString::number(run.totalSubTasks),
             QString::number(run.failedSubTasks), QString::number(run.processedSubTasks)},
            {{}, {}, {}, key(run.totalSubTasks), key(run.failedSubTasks), key(run.processedSubTasks)}};
}

} // namespace

CHistoryPanel::CHistoryPanel(const Console& console, const TaskRow& task)
    : CTaskRecordPanel(console, task, Page()) {}

void CHistoryPanel::AddColumns(CBrenListCtrl& list) {
    list.AddColumn(tr("Start Time"), 150);
    list.AddColumn(tr("Stop Time"), 150);
    list.AddColumn(tr("Stop Reason"), 250);
    list.AddColumn(tr("Total Subtasks"), 200);
    list.AddColumn(tr("Failed Subtasks"), 200);
    list.AddColumn(tr("Processed Subtasks"), 200);
}

CRecordPanel::RowReader CHistoryPanel::Reading() const {
    return [id = Task().id](RowStream& rows, std::stop_token stop) {
        std::vector<ProcessLogRecord> runs;
        ReadResult read = FillProcessLog(id, runs, stop);
        for (std::size_t place = 0; place < runs.size(); ++place)
            rows.Put(RowOf(static_cast<qsizetype>(place), runs[place]));
        return read;
    };
}
