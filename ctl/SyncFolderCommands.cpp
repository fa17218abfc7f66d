#include "ctl/Rows.h"

#include "service/VirtualDirectories.h"
#include "stores/SchedulerStore.h"
#include "syncplan/FileVersions.h"
#include "syncplan/LocalFolder.h"
#include "syncplan/SyncState.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr OpenRule ThreeAttempts{3, std::chrono::milliseconds(100)};

/// The folders of the list, or the exit code after a sentence.
struct FolderList {
    std::vector<SyncFolder> folders;
    CtlExit exit = CtlExit::Done;
};

FolderList ReadFolders(const Invocation& invocation) {
    const ServiceAnswer answer =
        ServiceClient().GetSetting(QString::fromLatin1(DropFolders.name), invocation.stop);
    switch (SettingStateOf(answer)) {
    case SettingState::Set:
        return {SyncFoldersOf(EntriesOf(SettingText(answer.body)))};
    case SettingState::NotSet:
        return {};
    case SettingState::NotRead:
        break;
    }
    return {{}, answer ? invocation.EndBrokenOff() : invocation.End(answer)};
}

/// Runs with the folder that the first operand names, ignoring case.
template <CtlExit (*run)(const Invocation&, const SyncFolder&)>
CtlExit OnFolder(const Invocation& invocation) {
    const FolderList list = ReadFolders(invocation);
    if (list.exit != CtlExit::Done)
        return list.exit;
    if (const SyncFolder* folder = FindSyncFolder(list.folders, invocation.operands[0]))
        return run(invocation, *folder);
    return invocation.End(CtlExit::Refused,
                          u"There is no Cloud Sync Folder \"%1\"."_s.arg(invocation.operands[0]));
}

/// The row of the task in the scheduler's list; none where the service or the list knows none.
CtlExit AddFolder(const Invocation& invocation, SchedulerStore& tasks, const SyncFolder& folder,
                  RowWriter& rows) {
    const ServiceAnswer answer = RequestSyncTask(ServiceClient(), folder.name, invocation.stop);
    if (SettingStateOf(answer) == SettingState::NotRead)
        return answer ? invocation.EndBrokenOff() : invocation.End(answer);
    const QString id = answer ? SettingText(answer.body) : QString();
    const TaskLookup lookup = id.isEmpty() ? TaskLookup() : tasks.LookupTask(id);
    if (!lookup.read)
        return invocation.End(lookup.read);
    const TaskInfo& task = lookup.task;
    const QString status =
        SyncStatusText(task.state, task.nextRun, QTime::currentTime()).value_or(TaskStateText(task.state));
    const QString shownId = id.isEmpty() ? QString() : id;
    if (lookup.found)
        rows.Add({folder.name, folder.path, static_cast<qint64>(task.state), status, task.nextRun, shownId});
    else
        rows.Add({folder.name, folder.path, QString(), QString(), QString(), shownId});
    return CtlExit::Done;
}

CtlExit ListFolders(const Invocation& invocation) {
    const std::vector<Column> columns{
        {"vdir"_L1, "DIRECTORY"_L1}, {"path"_L1, "FOLDER"_L1},      {"state"_L1},
        {"status"_L1, "STATUS"_L1},  {"nextRun"_L1, "NEXT RUN"_L1}, {"taskId"_L1}};
    return WriteRows(invocation, columns, [&invocation](RowWriter& rows) {
        const FolderList list = ReadFolders(invocation);
        SchedulerStore tasks(invocation.stop);
        CtlExit exit = list.exit;
        for (const SyncFolder& folder : list.folders)
            if (exit == CtlExit::Done)
                exit = AddFolder(invocation, tasks, folder, rows);
        return exit;
    });
}

/// Of a change that stands what went wrong behind it is an error, too.
CtlExit EndChange(const Invocation& invocation, const SyncFolderChange& change) {
    if (change.IsWhole())
        return CtlExit::Done;
    return invocation.End(change.list.silent ? CtlExit::Unreachable : CtlExit::Refused, change.Report());
}

CtlExit Add(const Invocation& invocation) {
    const QString& path = invocation.operands[1];
    if (const QString refusal = SyncFolderRefusal({invocation.operands[0], path}); !refusal.isEmpty())
        return invocation.End(CtlExit::Usage, refusal);
    const ServiceAnswer answer = ServiceClient().RequestVdirList(invocation.stop);
    if (!answer)
        return invocation.End(invocation.End(answer), NoVdirListText());
    if (!answer.length)
        return invocation.EndBrokenOff();
    const auto records = ParseVdirList(answer.body).value_or(std::vector<VDirRecord>());
    const VDirRecord* record = FindVDir(records, invocation.operands[0]);
    if (!record)
        return invocation.End(CtlExit::Refused,
                              u"There is no virtual directory \"%1\"."_s.arg(invocation.operands[0]));
    return EndChange(invocation, EnableSyncFolder(ServiceClient(), {record->name, path}, invocation.stop));
}

CtlExit Disable(const Invocation& invocation) {
    return EndChange(invocation, DisableSyncFolder(ServiceClient(), invocation.operands[0], invocation.stop));
}

CtlExit SyncNow(const Invocation& invocation, const SyncFolder& folder) {
    return invocation.End(RequestSync(ServiceClient(), folder.name, invocation.stop));
}

CtlExit ListChanges(const Invocation& invocation, const SyncFolder& folder) {
    const std::vector<Column> columns{
        {"file"_L1, "FILE"_L1}, {"operation"_L1, "OPERATION"_L1}, {"stamp"_L1},
        {"when"_L1, "WHEN"_L1}, {"updater"_L1, "UPDATED BY"_L1},  {"computer"_L1, "FROM"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        std::vector<HistoryRecord> records;
        const ReadResult read =
            FillHistory(HistoryView::ChangeList, folder.name, records, invocation.stop, ThreeAttempts);
        const qint64 now = CurrentStamp();
        for (const FileChange& change : ChangesOf(records)) {
            const QString operation = ChangeText(change.operation);
            const QString when = StampText(change.stamp, now);
            if (!rows.Add({change.file, operation, change.stamp, when, change.updater, change.computer}))
                break;
        }
        return invocation.End(read);
    });
}

/// Runs with the file that the second operand names.
template <CtlExit (*run)(const Invocation&, const SyncFolder&)>
CtlExit OnFile(const Invocation& invocation) {
    if (!invocation.operands[1].startsWith(u'/'))
        return invocation.End(CtlExit::Usage, u"A path begins with \"/\", as in /photos/hall.jpg."_s);
    return OnFolder<run>(invocation);
}

ServiceAnswer RequestVersionsOf(const Invocation& invocation, const SyncFolder& folder) {
    return RequestVersions(ServiceClient(), folder.name, invocation.operands[1], invocation.stop);
}

CtlExit ListVersions(const Invocation& invocation, const SyncFolder& folder) {
    const std::vector<Column> columns{
        {"version"_L1, "VERSION"_L1}, {"op"_L1, "OP"_L1},     {"stamp"_L1},
        {"when"_L1, "WHEN"_L1},       {"base"_L1, "BASE"_L1}, {"updater"_L1, "UPDATER"_L1},
        {"from"_L1, "FROM"_L1},       {"key"_L1, "KEY"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        const ServiceAnswer answer = RequestVersionsOf(invocation, folder);
        if (!answer)
            return invocation.End(answer);
        const qint64 now = CurrentStamp();
        for (const FileVersion& version : VersionsOf(answer.body)) {
            const QString operation = VersionOperationText(version.operation);
            const QString when = StampText(version.stamp, now);
            const QString base = version.BaseText();
            const QString key = version.Key();
            if (!rows.Add({qint64{version.number}, operation, version.stamp, when, base, version.updater,
                           version.computer, key}))
                break;
        }
        return answer.length ? CtlExit::Done : invocation.EndBrokenOff();
    });
}

CtlExit Revert(const Invocation& invocation, const SyncFolder& folder) {
    const QString& key = invocation.operands[2];
    const ServiceAnswer answer = RequestVersionsOf(invocation, folder);
    if (!answer)
        return invocation.End(answer);
    if (!answer.length)
        return invocation.EndBrokenOff();
    if (!FindVersion(VersionsOf(answer.body), key))
        return invocation.End(CtlExit::Refused,
                              u"The file has no version \"%1\" that it could be reverted to."_s.arg(key));
    return invocation.End(RequestRevert(ServiceClient(), key, invocation.stop));
}

} // namespace

std::vector<Command> SyncFolderCommands() {
    const Operand directory{"VDIR"_L1};
    const Operand file{"PATH"_L1};
    return {
        {"syncfolders"_L1,
         {},
         {JsonOption},
         "The Cloud Sync Folders and how their tasks stand."_L1,
         ListFolders},
        {"sync add"_L1,
         {directory, file},
         {},
         "Keeps the local folder of this path in step with the virtual directory. The folder is\n"
         "made when it is missing."_L1,
         Add},
        {"sync disable"_L1,
         {directory},
         {},
         "Ends keeping the directory's folder in step. Files stay where they are, here and in the\n"
         "storage."_L1,
         Disable},
        {"sync now"_L1,
         {directory},
         {},
         "Synchronises the directory's folder at once."_L1,
         OnFolder<SyncNow>},
        {"changes"_L1,
         {directory},
         {JsonOption},
         "The latest 200 changes of files in the directory's folder, newest first."_L1,
         OnFolder<ListChanges>},
        {"versions"_L1,
         {directory, file},
         {JsonOption},
         "The versions of a file, as in /photos/hall.jpg, the present one first."_L1,
         OnFile<ListVersions>},
        {"revert"_L1,
         {directory, file, {"KEY"_L1}},
         {},
         "Makes the version of this key the present one. What was there becomes a version."_L1,
         OnFile<Revert>},
    };
}
