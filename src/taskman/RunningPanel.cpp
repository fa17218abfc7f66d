#include "taskman/RunningPanel.h"

#include "list/BrenListCtrl.h"
#include "page/Console.h"
#include "taskman/RunningText.h"

#include <QSet>

#include <algorithm>

namespace {

RecordPage LivePage() {
    RecordPage page;
    page.period = std::chrono::seconds(1);
    page.gated = true;
    return page;
}

RecordPage TaskPage() {
    RecordPage page = LivePage();
    page.name = CRunningPanel::tr("Running");
    page.widths = QStringLiteral("RunningSubtasks");
    page.status = CRunningPanel::tr("Check the progress of your currently processing sub-tasks");
    page.empty = CRunningPanel::tr("No subtask is being processed.");
    return page;
}

RecordPage SystemPage() {
    RecordPage page = LivePage();
    page.name = CSysRunningPanel::tr("System Activities");
    page.widths = QStringLiteral("SystemActivities");
    page.status = CSysRunningPanel::tr("View current system activities.");
    page.empty = CSysRunningPanel::tr("System is idle.");
    return page;
}

/// Names a sub-task as long as it runs. Some have nothing to tell them apart but their order.
class RowIds {
public:
    QString Next(const RunningSubTask& running) {
        const QString name =
            QStringList{running.taskId, running.operation, running.fileName, running.target}.join(u'\n');
        QString id = name;
        for (int again = 2; m_used.contains(id); ++again)
            id = name + u'\n' + QString::number(again);
        m_used.insert(id);
        return id;
    }

private:
    QSet<QString> m_used;
};

QStringList TaskCells(const RunningSubTask& running) {
    return {running.taskId,
            OperationCell(running.operation),
            ShownFileName(running.fileName),
            running.target,
            CountCell(running.bytesTotal),
            CountCell(std::min(running.bytesDone, running.bytesTotal)),
            ProgressCell(running.bytesDone, running.bytesTotal)};
}

QString StatusOf(const RunningSubTask& running) {
    if (IsSyncWatcher(running))
        return CSysRunningPanel::tr("Monitoring changes");
    const QString words = OperationWords(running.operation) + QStringLiteral("...");
    return running.status.isEmpty() ? words : words + u' ' + running.status;
}

QStringList SystemCells(const RunningSubTask& running) {
    const QString file = ShownFileName(running.fileName);
    return {running.taskId,
            CountCell(running.bytesTotal),
            CountCell(std::min(running.bytesDone, running.bytesTotal)),
            file.isEmpty() ? running.taskName : running.taskName + QStringLiteral(": ") + file,
            running.target,
            StatusOf(running),
            ProgressCell(running.bytesDone, running.bytesTotal)};
}

} // namespace

CRunningPanel::CRunningPanel(const Console& console, const TaskRow& task)
    : CTaskRecordPanel(console, task, TaskPage()) {}

void CRunningPanel::AddColumns(CBrenListCtrl& list) {
    list.AddColumn(tr("TaskId"), 0);
    list.AddColumn({}, 24);
    list.AddColumn(tr("File Name"), 200);
    list.AddColumn(tr("Target"), 250);
    list.AddColumn(tr("Total"), 0);
    list.AddColumn(tr("Current"), 0);
    list.AddColumn(tr("Completion"), 170);
}

CRecordPanel::RowReader CRunningPanel::Reading() const {
    return [id = Task().id, counters = &TheConsole().counters](RowStream& rows, std::stop_token) {
        RowIds ids;
        const bool told = counters->ZEPEnumTasksWithCallBackEx(id, [&](const RunningSubTask& running) {
            if (!IsSyncWatcher(running))
                rows.Put({ids.Next(running), TaskCells(running)});
            return true;
        });
        return told ? ReadResult() : ReadResult{ReadOutcome::Untold, {}};
    };
}

CSysRunningPanel::CSysRunningPanel(const Console& console) : CRecordPanel(console, SystemPage()) {}

void CSysRunningPanel::AddColumns(CBrenListCtrl& list) {
    list.AddColumn(tr("TaskId"), 0);
    list.AddColumn(tr("Total"), 0);
    list.AddColumn(tr("Current"), 0);
    list.AddColumn(tr("Task"), 230);
    list.AddColumn(tr("Target"), 200);
    list.AddColumn(tr("Status"), 130);
    list.AddColumn(tr("Completion"), 150);
}

CRecordPanel::RowReader CSysRunningPanel::Reading() const {
    return [counters = &TheConsole().counters](RowStream& rows, std::stop_token) {
        RowIds ids;
        const bool told = counters->ZEPEnumTasksWithCallBackEx({}, [&](const RunningSubTask& running) {
            rows.Put({ids.Next(running), SystemCells(running)});
            return true;
        });
        return told ? ReadResult() : ReadResult{ReadOutcome::Untold, {}};
    };
}
