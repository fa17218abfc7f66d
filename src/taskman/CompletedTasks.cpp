#include "taskman/CompletedTasks.h"

#include "list/BrenListCtrl.h"
#include "look/IconRegistry.h"
#include "stores/SchedulerStore.h"
#include "stores/TaskState.h"
#include "taskman/RowDeletion.h"

namespace {

constexpr int DeleteColumn = 3;

RecordPage Page() {
    RecordPage page;
    page.name = CCompletedTasks::tr("Completed Tasks");
    page.widths = QStringLiteral("CompletedTasks");
    page.status = CCompletedTasks::tr("Manage completed tasks.");
    page.empty = CCompletedTasks::tr("No task found.");
    page.period = std::chrono::seconds(5);
    return page;
}

ServiceAnswer DeleteTask(const ServiceClient& service, const QString& taskId, std::stop_token stop) {
    return service.DeleteTask(taskId, stop);
}

ListRow RowOf(const TaskRecord& task) {
    static const QString remove =
        QStringLiteral("#ICON:%1@@").arg(DeleteIcon) + CCompletedTasks::tr("Click to delete the task");
    return {task.taskId, {task.taskId, task.name, task.lastRun, remove}};
}

} // namespace

CCompletedTasks::CCompletedTasks(const Console& console) : CRecordPanel(console, Page()) {}

void CCompletedTasks::AddColumns(CBrenListCtrl& list) {
    list.AddColumn(tr("TaskId"), 0);
    list.AddColumn(tr("Task Name"), 340);
    list.AddColumn(tr("Last Run Time"), 160);
    list.AddColumn({}, 24);
    auto* deletion = new RowDeletion(TheConsole(), list, DeleteColumn,
                                     {tr("Do you really want to delete the task?"),
                                      tr("Do you really want to remove the selected tasks?"),
                                      tr("Failed to delete the task")},
                                     DeleteTask);
    connect(deletion, &RowDeletion::Sent, this, [this] { Reload(); });
}

CRecordPanel::RowReader CCompletedTasks::Reading() const {
    return [](RowStream& rows, std::stop_token stop) {
        const auto put = [&rows](const TaskRecord& task) {
            if (task.state == TaskState::Completed)
                rows.Put(RowOf(task));
            return true;
        };
        return EnumAllTasks(put, stop);
    };
}

std::vector<FrameAction> CCompletedTasks::Toolbar() {
    return {RefreshAction()};
}
