#include "taskman/SubtaskPanel.h"

#include "list/BrenListCtrl.h"
#include "look/Formatters.h"
#include "look/IconRegistry.h"
#include "page/Console.h"
#include "stores/SubTaskStore.h"
#include "taskman/RowDeletion.h"
#include "taskman/SubTaskText.h"

#include <QStringBuilder>

namespace {

constexpr int DeleteColumn = 9;

RecordPage PageOf(SubtaskView view) {
    const bool retry = view == SubtaskView::PendingRetry;
    RecordPage page;
    page.name = retry ? CSubtaskPanel::tr("Pending Retry") : CSubtaskPanel::tr("Pending");
    page.widths = QStringLiteral("Subtasks");
    page.status = CSubtaskPanel::tr("View the pending subtasks. They'll be processed later.");
    page.empty = CSubtaskPanel::tr("No Subtask found.");
    page.failure = CSubtaskPanel::tr("Failed to get subtask list, refresh later");
    page.period = std::chrono::seconds(5);
    return page;
}

QString DirectionCell(const QString& type) {
    static const QString up = QStringLiteral("#ICON:%1#@@Uploading...").arg(UploadIcon);
    static const QString down = QStringLiteral("#ICON:%1#@@Downloading...").arg(DownloadIcon);
    switch (DirectionOfSubTask(type)) {
    case TransferDirection::Upload:
        return up;
    case TransferDirection::Download:
        return down;
    case TransferDirection::None:
        break;
    }
    return {};
}

/// The service gives the numbers of one run to other sub-tasks in the next, so a row is known by its work
/// too.
QString RowIdOf(const QString& taskId, const SubTaskRecord& record) {
    return QString::number(record.subTaskNumber) % u':' % taskId % u'\n' % record.text1 % u'\n' %
           record.text2;
}

ServiceAnswer DeleteSubTask(const ServiceClient& service, const QString& rowId, std::stop_token stop) {
    const qsizetype colon = rowId.indexOf(u':');
    const QString taskId = rowId.mid(colon + 1, rowId.indexOf(u'\n') - colon - 1);
    return service.DeleteSubTask(taskId, rowId.left(colon).toInt(), stop);
}

ListRow RowOf(const QString& taskId, const QStringList& sources, const SubTaskRecord& record) {
    static const QString trace =
        QStringLiteral("#ICON:%1@@").arg(TraceIcon) + CSubtaskPanel::tr("Click to see related trace");
    static const QString remove = QStringLiteral("#ICON:%1@@").arg(DeleteIcon) +
                                  CSubtaskPanel::tr("Click to delete the failed sub-task");
    const QString number = QString::number(record.subTaskNumber);
    return {RowIdOf(taskId, record),
            {taskId, trace, DirectionCell(record.text1), SubTaskName(record.text1, record.text2),
             ShownParameter(record.text2, sources), record.text3, number,
             FormatSize(static_cast<quint64>(std::max<qint64>(record.number5, 0))), record.text4, remove},
            {{}, {}, {}, {}, {}, {}, {}, NumberSortKey(record.number5), {}, {}}};
}

} // namespace

CSubtaskPanel::CSubtaskPanel(const Console& console, const TaskRow& task, SubtaskView view)
    : CTaskRecordPanel(console, task, PageOf(view)), m_view(view) {}

void CSubtaskPanel::AddColumns(CBrenListCtrl& list) {
    list.AddColumn(tr("TaskId"), 0);
    list.AddColumn({}, 0);
    list.AddColumn({}, 24);
    list.AddColumn(tr("Task Name"), 190);
    list.AddColumn(tr("Parameter 1"), 250);
    list.AddColumn(tr("Parameter 2"), 0);
    list.AddColumn(tr("Index"), 0);
    list.AddColumn(tr("Size"), 80, Qt::AlignRight);
    list.AddColumn(tr("Note"), 120);
    list.AddColumn({}, 24);
    auto* deletion = new RowDeletion(TheConsole(), list, DeleteColumn,
                                     {tr("Do you really want to remove this sub-task?"),
                                      tr("Do you really want to remove selected sub-tasks?"),
                                      tr("Failed to delete the subtask")},
                                     DeleteSubTask);
    connect(deletion, &RowDeletion::Sent, this, [this] { Reload(); });
}

CRecordPanel::RowReader CSubtaskPanel::Reading() const {
    const bool retry = m_view == SubtaskView::PendingRetry;
    const auto stateA = retry ? SubTaskState::PendingRetry : SubTaskState::Pending;
    const auto stateB = retry ? SubTaskState::Failed : SubTaskState::Pending;
    return [id = Task().id, sources = SourcesOf(Task().description), stateA, stateB](RowStream& rows,
                                                                                     std::stop_token stop) {
        const auto put = [&](const SubTaskRecord& record) {
            rows.Put(RowOf(id, sources, record));
            return true;
        };
        return EnumSubTasks(id, static_cast<int>(stateA), static_cast<int>(stateB), put, stop);
    };
}
