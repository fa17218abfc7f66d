#include "backup/SnapshotsPanel.h"

#include "backup/RestoreEndLine.h"
#include "backup/RestoreTaskWizard.h"
#include "list/RecordTable.h"
#include "look/IconRegistry.h"
#include "page/UserPrompts.h"
#include "taskman/TaskList.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The backup that a set is of.
struct SetOwner {
    QString taskId;
    QString name;
    BackupSetPlace place;
    QStringList sources;
};

SetOwner BackupOf(const TaskRow& task) {
    return {task.id, task.title, SetPlaceOf(task.id, task.type, task.description),
            DescriptionOf(KindOfBackup(task.type, task.description), task.description).sources};
}

std::vector<Snapshot> SnapshotsOf(const std::vector<TakenRow>& rows) {
    std::vector<Snapshot> snapshots;
    snapshots.reserve(rows.size());
    for (const TakenRow& row : rows)
        snapshots.push_back(RecordOf<SnapshotRow>(row).snapshot);
    return snapshots;
}

/// Which snapshots are to be deleted, and which others go with them.
QString Subject(const std::vector<TakenRow>& rows, const RowSet& all) {
    std::vector<TakenRow> every;
    every.reserve(std::size_t(all.Count()));
    for (int row = 0; row < all.Count(); ++row)
        every.push_back(all.At(row));
    std::vector<Snapshot> known = SnapshotsOf(every);
    std::sort(known.begin(), known.end());
    const std::vector<Snapshot> deleted = SnapshotsOf(rows);
    const bool several = deleted.size() > 1;
    QString text = several ? CSnapshotsPanel::tr("%1 snapshots").arg(deleted.size())
                           : TimeText(deleted.front()) + (deleted.front().IsFull()
                                                              ? CSnapshotsPanel::tr(" (Full)")
                                                              : CSnapshotsPanel::tr(" (Incremental)"));
    if (const QString lost = LostText(LostWithout(deleted, known), several); !lost.isEmpty())
        text += u'\n' + lost;
    return text;
}

RowCommand Deletion(const BackupSetPlace& place) {
    return DeleteCommand<SnapshotRow>(
        {.caption = CSnapshotsPanel::tr("Delete"),
         .icon = DeleteIcon,
         .words = CSnapshotsPanel::tr("Click to delete the snapshot")},
        {.one = CSnapshotsPanel::tr("Do you really want to delete the snapshot?"),
         .several = CSnapshotsPanel::tr("Do you really want to delete the selected snapshots?"),
         .failed = CSnapshotsPanel::tr(
             "Failed to delete the snapshot. It may be in use, or another backup that needs "
             "it may have been made meanwhile."),
         .subject = Subject,
         .before =
             [](const TakenRow& one, const TakenRow& other) {
                 return RecordOf<SnapshotRow>(other).snapshot < RecordOf<SnapshotRow>(one).snapshot;
             }},
        [place](const ServiceClient& service, const SnapshotRow& row, const std::stop_token& stop) {
            return DeleteSnapshot(service, place, row.snapshot, row.newest, stop);
        });
}

using Restore = std::function<void(const SnapshotRow&)>;

ReadResult ReadRows(const ServiceClient& service, const SetOwner& backup, ProgressNote& steps,
                    RecordStream<SnapshotRow>& rows, const std::stop_token& stop) {
    const SetContent content = ReadSet(service, backup.place, stop, [&steps](const QString& step) {
        steps.Tell({0, 0, step});
    });
    if (stop.stop_requested())
        return {ReadOutcome::Stopped, {}};
    if (!content.failure.isEmpty())
        return {ReadOutcome::Refused, content.failure};
    std::vector<SnapshotRow> read;
    read.reserve(content.snapshots.size());
    for (auto snapshot = content.snapshots.rbegin(); snapshot != content.snapshots.rend(); ++snapshot)
        read.push_back({*snapshot, content.type, backup.taskId, content.snapshots.back()});
    rows.PutAll(std::move(read));
    return {};
}

ListTable TableOf(const Console& console, const TaskRow& task, const std::shared_ptr<ProgressNote>& steps,
                  const Restore& restore) {
    const SetOwner backup = BackupOf(task);
    const bool running = task.state == TaskState::Running;
    return RecordTable<SnapshotRow>{
        .page = {.name = CSnapshotsPanel::tr("Snapshots"),
                 .widths = u"Snapshots"_s,
                 .status = CSnapshotsPanel::tr(
                     "View full and incremental snapshots. Click on the arrow to restore the "
                     "selected snapshot. Click the red X to delete the selected snapshot."),
                 .empty = CSnapshotsPanel::tr("No backup set found."),
                 .loading = CSnapshotsPanel::tr("Loading backup set list..."),
                 .steps = steps,
                 .failure = CSnapshotsPanel::tr("No backup set found."),
                 .lane = Lane::Service,
                 .subject = backup.place.Folder(),
                 .edition = task.lastRun + (running ? u"+"_s : QString())},
        .columns = {{CSnapshotsPanel::tr("Snapshot Taken Time"), 220,
                     [](const SnapshotRow& row) { return Cell::Plain(TimeText(row.snapshot)); }},
                    {CSnapshotsPanel::tr("Full"), 80,
                     [](const SnapshotRow& row) {
                         return row.snapshot.IsFull() ? CSnapshotsPanel::tr("Yes")
                                                      : CSnapshotsPanel::tr("No");
                     }},
                    {CSnapshotsPanel::tr("Type"), 140,
                     [](const SnapshotRow& row) { return SetTypeText(row.type); }}},
        .id = {[](const SnapshotRow& row) { return row.snapshot.name; }},
        .read = [service = console.service, backup, steps](
                    RecordStream<SnapshotRow>& rows,
                    const std::stop_token& stop) { return ReadRows(service, backup, *steps, rows, stop); },
        .commands = {Deletion(backup.place),
                     {.caption = CSnapshotsPanel::tr("Restore"),
                      .icon = DownloadIcon,
                      .words = CSnapshotsPanel::tr("Click to restore with the snapshot"),
                      .run =
                          [restore](RecordView&, const std::vector<TakenRow>& rows) {
                              restore(RecordOf<SnapshotRow>(rows.front()));
                          },
                      .single = true}}};
}

/// Opens the wizard for a snapshot of the task, and lets the line tell how the restore ends.
Restore RestoreBy(const Console& console, RestoreEndLine& line, const SetOwner& backup) {
    return [&console, line = QPointer(&line), backup](const SnapshotRow& row) {
        if (!line)
            return;
        RestoreSet set{backup.place, backup.name, backup.sources, row.type, {row.snapshot}};
        OpenRestoreWizard(console, line, RestoreStart{std::move(set), row.snapshot},
                          [line](const std::optional<RestoreDraft>& created) {
                              if (line && created)
                                  line->Await(*created);
                          });
    };
}

} // namespace

CSnapshotsPanel::CSnapshotsPanel(const Console& console, const TaskRow& task)
    : CSnapshotsPanel(console, task, std::make_shared<ProgressNote>()) {}

CSnapshotsPanel::CSnapshotsPanel(const Console& console, const TaskRow& task,
                                 std::shared_ptr<ProgressNote> steps)
    : RecordPanel(console, TableOf(console, task, steps, {})), m_end(new RestoreEndLine(console)),
      m_steps(std::move(steps)) {
    SetControls(m_end);
    Turn(task);
}

void CSnapshotsPanel::Turn(const TaskRow& task) {
    m_end->SetSources(BackupOf(task).sources);
    RecordPanel::Turn(TableOf(TheConsole(), task, m_steps, RestoreBy(TheConsole(), *m_end, BackupOf(task))));
}
