#include "taskman/TaskAudit.h"

#include "list/BrenListCtrl.h"
#include "list/ListText.h"
#include "look/IconRegistry.h"
#include "page/UserPrompts.h"
#include "stores/AuditTraceStore.h"

namespace {

RecordPage Page() {
    RecordPage page;
    page.name = CTaskAudit::tr("Trace");
    page.widths = QStringLiteral("TaskAudit");
    page.status = CTaskAudit::tr("View audit trace of activities related to this task.");
    page.empty = CTaskAudit::tr("No Record Found.");
    page.loading = CTaskAudit::tr("Querying, please wait...");
    page.listing = CTaskAudit::tr("Listing, please wait...");
    return page;
}

/// Makes the rows of a walk, newest first.
class TraceRows {
public:
    ListRow Next(const AuditRecord& record) {
        switch (record.level) {
        case 0:
            m_swatch = QStringLiteral("#COLOR:GREEN");
            break;
        case 1:
            m_swatch = QStringLiteral("#COLOR:YELLOW");
            break;
        case 2:
            m_swatch = QStringLiteral("#COLOR:RED");
            break;
        default:
            break; // an unknown level keeps the colour of the row before, on purpose
        }
        m_sameTime = record.time == m_time ? m_sameTime + 1 : 0;
        m_time = record.time;
        return {m_time + u'#' + QString::number(m_sameTime), {m_swatch, m_time, AuditMessage(record.trace)}};
    }

private:
    QString m_swatch;
    QString m_time;
    int m_sameTime = 0; ///< rows of this time before
};

QString JoinedRows(const std::vector<ListRow>& rows) {
    QStringList lines;
    for (const ListRow& row : rows)
        lines.append(WordsOfRow(row).join(QStringLiteral("    ")));
    return lines.join(QStringLiteral("\r\n"));
}

} // namespace

CTaskAudit::CTaskAudit(const Console& console, const TaskRow& task)
    : CTaskRecordPanel(console, task, Page()) {}

void CTaskAudit::AddColumns(CBrenListCtrl& list) {
    list.AddColumn(tr("Type"), 50);
    list.AddColumn(tr("Time"), 140);
    list.AddColumn(tr("Trace"), 400);
    list.SetMultiSelection(true);
    connect(&list, &CBrenListCtrl::CountsChanged, this, &CTaskAudit::EnableActions);
}

CRecordPanel::RowReader CTaskAudit::Reading() const {
    return [id = Task().id](RowStream& rows, std::stop_token stop) {
        TraceRows made;
        return AuditTraceStore(stop).EnumTaskTraces(id, [&](const AuditRecord& record) {
            rows.Put(made.Next(record));
            return true;
        });
    };
}

std::vector<FrameAction> CTaskAudit::Toolbar() {
    const bool any = List().Rows().TotalRows() > 0;
    const bool canCopy = any && !m_copying && !Loader().IsReading();
    return {RefreshAction(tr("Refresh")),
            {tr("Copy All"), CopyIcon, [this] { CopyAll(); }, canCopy},
            {tr("Delete All"), DeleteAllIcon, [this] { AskToDeleteAll(); }, any && !m_deleting}};
}

void CTaskAudit::EnableActions() {
    SetToolbar(Toolbar());
}

/// Off the window's thread, since a million rows take a while.
void CTaskAudit::CopyAll() {
    if (std::exchange(m_copying, true))
        return;
    EnableActions();
    Loader().Command(
        Lane::Databases, [rows = List().Rows().AllRows()](std::stop_token) { return JoinedRows(rows); },
        [this](const Loaded<QString>& text) {
            m_copying = false;
            EnableActions();
            if (!text)
                return;
            TheConsole().prompts.SetClipboardText(*text);
            TheConsole().prompts.ShowMessage(this, tr("All trace items have been copied to clipboard"));
        });
}

void CTaskAudit::AskToDeleteAll() {
    if (std::exchange(m_deleting, true))
        return;
    EnableActions();
    const auto onAnswer = [this, id = Task().id](bool yes) {
        if (yes && id == Task().id)
            return DeleteAll(id);
        if (yes)
            TheConsole().prompts.ShowMessage(this, tr("The task is no longer there."));
        m_deleting = false;
        EnableActions();
    };
    TheConsole().prompts.AskYesNo(this, tr("Do you really want to delete all trace items of this task?"),
                                  onAnswer);
}

void CTaskAudit::DeleteAll(const QString& taskId) {
    Loader().Cancel();
    Loader().Command(
        Lane::Databases,
        [taskId](std::stop_token stop) {
            const ReadResult deleted = DeleteTaskTraces(taskId, stop);
            return deleted ? QString() : deleted.Sentence();
        },
        [this](const Loaded<QString>& failure) {
            m_deleting = false;
            EnableActions();
            if (!failure || !failure->isEmpty())
                TheConsole().prompts.ShowMessage(this, tr("Failed to delete the trace items"), {},
                                                 failure ? *failure : QString());
            Reload();
        });
}
