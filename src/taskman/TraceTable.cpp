#include "taskman/TraceTable.h"

#include "list/RecordPanel.h"
#include "list/TraceRows.h"
#include "look/Formatters.h"
#include "look/IconRegistry.h"
#include "page/Console.h"
#include "page/UserPrompts.h"
#include "stores/TaskState.h"
#include "taskman/TaskList.h"

using namespace Qt::Literals::StringLiterals;

namespace {

RecordPage PageOf(const TaskRow& task) {
    return {.name = RecordPanel::tr("Trace"),
            .widths = u"TaskAudit"_s,
            .status = RecordPanel::tr("View audit trace of activities related to this task."),
            .empty = RecordPanel::tr("No Record Found."),
            .loading = RecordPanel::tr("Querying, please wait..."),
            .listing = RecordPanel::tr("Listing, please wait..."),
            .subject = task.id,
            .edition = QString::number(static_cast<int>(task.state)) + task.lastRun,
            .tellsAge = task.state == TaskState::Running};
}

void DeleteAll(RecordView& view, const QString& taskId, const std::function<void()>& done) {
    view.CancelRead();
    view.Loader().Command(
        Lane::Databases, [taskId](std::stop_token stop) { return DeleteTaskTraces(taskId, std::move(stop)); },
        [&view, done](const Loaded<ReadResult>& deleted) {
            done();
            if (!deleted || !*deleted)
                view.TheConsole().prompts.ShowMessage(&view,
                                                      RecordPanel::tr("Failed to delete the trace items"), {},
                                                      deleted ? deleted->Sentence() : QString());
            view.Read();
        });
}

void AskToDeleteAll(RecordView& view, const QString& taskId, const QString& name,
                    const std::function<void()>& done) {
    UserPrompts& prompts = view.TheConsole().prompts;
    const QString question = RecordPanel::tr("Do you really want to delete all trace items of this task?") +
                             u'\n' + Isolated(name);
    prompts.AskYesNo(&view, question, [&view, &prompts, taskId, done](bool yes) {
        const bool same = view.Page().subject == taskId;
        if (yes && same)
            return DeleteAll(view, taskId, done);
        if (yes)
            prompts.ShowMessage(&view, RecordPanel::tr("The task is no longer there."));
        done();
    });
}

} // namespace

ListTable TraceTable(const TaskRow& task) {
    RecordTable<Trace> table =
        TraceRows(PageOf(task), [id = task.id](const AuditCallback& callback, std::stop_token stop) {
            return AuditTraceStore(std::move(stop)).EnumTaskTraces(id, callback);
        });
    table.actions = {{RecordPanel::tr("Copy All"), CopyIcon, TableAction::AllRows,
                      [](RecordView& view, const std::function<void()>& done) {
                          CopyTraces(view, {TraceLevelColumn, TraceTimeColumn, TraceMessageColumn}, {}, done);
                      }},
                     {RecordPanel::tr("Delete All"), DeleteAllIcon, TableAction::Rows,
                      [id = task.id, name = task.title](RecordView& view, const std::function<void()>& done) {
                          AskToDeleteAll(view, id, name, done);
                      }}};
    return table;
}
