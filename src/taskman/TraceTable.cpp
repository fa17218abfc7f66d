#include "taskman/TraceTable.h"

#include "list/BrenListCtrl.h"
#include "list/RecordPanel.h"
#include "list/RecordTable.h"
#include "look/Formatters.h"
#include "look/IconRegistry.h"
#include "page/Console.h"
#include "page/UserPrompts.h"
#include "stores/AuditTraceStore.h"
#include "stores/TaskState.h"
#include "taskman/TaskList.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct Trace {
    std::optional<SwatchColour> level;
    QString time;
    QString message;

    QString LevelCell() const { return level ? Cell::Swatch(*level) : QString(); }
    friend bool operator==(const Trace&, const Trace&) = default;
};

/// Makes the rows of a walk, newest first.
class Traces {
public:
    Trace Next(const AuditRecord& record) {
        // An unknown level keeps the colour of the row before, on purpose.
        constexpr std::array levels{SwatchColour::Green, SwatchColour::Yellow, SwatchColour::Red};
        if (record.level >= 0 && std::size_t(record.level) < levels.size())
            m_level = levels.at(std::size_t(record.level));
        return {m_level, record.time, AuditMessage(record.trace)};
    }

private:
    std::optional<SwatchColour> m_level;
};

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

/// Off the window's thread, since a million rows take a while.
void CopyAll(RecordView& view, const std::function<void()>& done) {
    const BrenListModel& rows = view.List().Rows();
    ListExcerpt excerpt{rows.AllRows(), Places(std::size_t(rows.TotalRows())), {0, 1, 2}};
    std::iota(excerpt.places.begin(), excerpt.places.end(), 0);
    view.Loader().Command(
        Lane::Computing, [excerpt](std::stop_token) { return JoinedWords(excerpt, u"    "_s, u"\r\n"_s); },
        [&view, done](const Loaded<QString>& text) {
            done();
            if (!text)
                return;
            UserPrompts& prompts = view.TheConsole().prompts;
            prompts.SetClipboardText(*text);
            prompts.ShowMessage(&view, RecordPanel::tr("All trace items have been copied to clipboard"));
        });
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
    return RecordTable<Trace>{
        .page = PageOf(task),
        .columns = {{RecordPanel::tr("Type"), 50, &Trace::LevelCell},
                    {RecordPanel::tr("Time"), 140, &Trace::time},
                    {RecordPanel::tr("Trace"), 400, &Trace::message}},
        .id = {&Trace::time, &Trace::message},
        .read =
            [id = task.id](RecordStream<Trace>& rows, std::stop_token stop) {
                Traces made;
                return AuditTraceStore(std::move(stop)).EnumTaskTraces(id, [&](const AuditRecord& record) {
                    rows.Put(made.Next(record));
                    return true;
                });
            },
        .actions = {{RecordPanel::tr("Copy All"), CopyIcon, TableAction::AllRows, CopyAll},
                    {RecordPanel::tr("Delete All"), DeleteAllIcon, TableAction::Rows,
                     [id = task.id, name = task.title](RecordView& view, const std::function<void()>& done) {
                         AskToDeleteAll(view, id, name, done);
                     }}}};
}
