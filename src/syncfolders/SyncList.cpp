#include "syncfolders/SyncList.h"

#include "page/StateFile.h"
#include "stores/SubTaskStore.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QSettings>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// With the list itself fewer than 20 requests a second, while there are folders that are new.
constexpr int MostAsked = 15;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(SyncList)
};

SyncMemory::Known& KnownOf(SyncMemory& memory, const SyncFolder& folder) {
    return memory.folders[folder.name.toCaseFolded()];
}

void ForgetOthers(SyncMemory& memory, const std::vector<SyncFolder>& folders) {
    QSet<QString> names;
    for (const SyncFolder& folder : folders)
        names.insert(folder.name.toCaseFolded());
    memory.folders.removeIf([&names](auto known) { return !names.contains(known.key()); });
}

/// Those that were never asked about go first. Ends at the first silence.
void AskForTasks(const ServiceClient& service, const std::vector<SyncFolder>& folders, SyncMemory& memory,
                 const std::stop_token& stop) {
    std::vector<const SyncFolder*> unknown;
    for (const SyncFolder& folder : folders)
        if (KnownOf(memory, folder).taskId.isEmpty() && SyncNameRefusal(folder.name).isEmpty())
            unknown.push_back(&folder);
    std::stable_partition(unknown.begin(), unknown.end(),
                          [&memory](const SyncFolder* folder) { return !KnownOf(memory, *folder).wasAsked; });
    int asked = 0;
    for (const SyncFolder* folder : unknown) {
        if (asked++ == MostAsked)
            break;
        const ServiceAnswer answer = RequestSyncTask(service, folder->name, stop);
        if (!answer && answer.outcome != ServiceOutcome::OtherStatus)
            break;
        KnownOf(memory, *folder) = {answer ? SettingText(answer.body) : QString(), true, 0};
    }
    memory.more = std::any_of(unknown.begin(), unknown.end(), [&memory](const SyncFolder* folder) {
        return !KnownOf(memory, *folder).wasAsked;
    });
}

/// As last known while the database cannot be read.
int FailedFiles(SyncMemory::Known& known, const std::stop_token& stop) {
    int failed = 0;
    const ReadResult read = EnumSubTasks(
        known.taskId, static_cast<int>(SubTaskState::PendingRetry), static_cast<int>(SubTaskState::Failed),
        [&failed](const SubTaskRecord&) {
            ++failed;
            return true;
        },
        stop, OpenOnce);
    if (read || read.outcome == ReadOutcome::Missing)
        known.failed = failed;
    return known.failed;
}

/// Since when the task has been paused, as far as this console has seen it; it is remembered from one start
/// to the next. A task that was paused already when it was first seen has been so for longer.
QString PausedSince(QSettings& kept, const QString& taskId, const TaskInfo& task) {
    const QString key = u"SyncPaused/"_s + taskId;
    const QString seenKey = u"SyncSeen/"_s + taskId;
    if (kept.contains(key) && task.lastRun > kept.value(key).toString() && task.lastRun[0].isDigit()) {
        kept.remove(key); // it has run since, and was paused anew while nobody looked
        kept.remove(seenKey);
    }
    if (task.state != TaskState::Paused) {
        if (!kept.contains(seenKey) || kept.contains(key)) {
            kept.setValue(seenKey, true);
            kept.remove(key);
        }
        return {};
    }
    if (!kept.contains(key))
        kept.setValue(key, QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm"_s));
    const QString time = kept.value(key).toString();
    return kept.contains(seenKey) ? Words::tr("paused since %1").arg(time)
                                  : Words::tr("paused since before %1").arg(time);
}

/// Of the card: one with failed files looks failed unless it is at work on them, or paused.
TaskState ShownState(const SyncRow& row) {
    const TaskState state = row.task ? row.task->state : TaskState::Held;
    const bool stands = state == TaskState::Pending || state == TaskState::Completed;
    return stands && row.failed > 0 ? TaskState::Failed : state;
}

} // namespace

QString FailedFilesText(int failed) {
    if (failed == 0)
        return {};
    return failed == 1 ? Words::tr("1 file failed") : Words::tr("%1 files failed").arg(failed);
}

std::function<CardEntries(std::stop_token)> SyncListReader(const ServiceClient& service,
                                                           const LiveCounters& counters,
                                                           std::shared_ptr<SyncMemory> memory) {
    return [service, &counters, memory = std::move(memory)](const std::stop_token& stop) {
        const SettingValue<QStringList> list = ReadList(service, DropFolders, stop);
        if (!list.WasRead())
            return CardEntries::Of<SyncRow>({ReadOutcome::Unavailable, {}}, {});
        const std::vector<SyncFolder> folders = SyncFoldersOf(list.value);
        ForgetOthers(*memory, folders);
        AskForTasks(service, folders, *memory, stop);

        SchedulerStore tasks(stop, OpenOnce);
        QSettings kept(StateFile(), QSettings::IniFormat);
        ReadResult read;
        std::vector<SyncRow> rows;
        rows.reserve(folders.size());
        for (const SyncFolder& folder : folders) {
            SyncRow row{{folder.name, SyncFolderTitle(folder.name)}, folder};
            SyncMemory::Known& known = KnownOf(*memory, folder);
            const TaskLookup lookup = known.taskId.isEmpty() ? TaskLookup() : tasks.LookupTask(known.taskId);
            if (!lookup.read)
                read = lookup.read;
            if (lookup.found) {
                row.taskId = known.taskId;
                row.task = lookup.task;
                row.counts = counters.ZEPTraceGetSTaskInfo(known.taskId);
                row.failed = FailedFiles(known, stop);
                row.pausedSince = PausedSince(kept, known.taskId, lookup.task);
            } else if (lookup.read) {
                known.taskId.clear(); // asked for again by the next read
            }
            row.shownState = static_cast<int>(ShownState(row));
            rows.push_back(std::move(row));
        }
        // Before the first read that went well, folders of unknown state are more than none.
        const bool keepsOlder = !read && memory->wasRead;
        memory->wasRead |= bool(read);
        return CardEntries::Of(keepsOlder ? read : ReadResult(), std::move(rows));
    };
}
