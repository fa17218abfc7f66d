#include "ctl/DavListCommand.h"
#include "ctl/Rows.h"
#include "ctl/TaskOperand.h"

#include "plan/BackupSets.h"
#include "plan/RestoreDraft.h"
#include "service/RequestText.h"
#include "stores/SchedulerStore.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QLatin1String PolicyNames = "overwrite|newer|rename|skip"_L1;

/// The set of the task that an operand means; none, with an exit code and after a sentence, when there is
/// none.
struct SetOperand {
    std::optional<BackupSetPlace> place;
    CtlExit exit = CtlExit::Done;
};

SetOperand FindSet(const Invocation& invocation, const QString& operand) {
    const TaskOperand task = FindTask(invocation, operand);
    if (!task.id)
        return {{}, task.exit};
    std::optional<BackupSetPlace> place;
    const ReadResult read = EnumAllTasks(
        [&](const TaskRecord& record) {
            if (record.taskId.compare(*task.id, Qt::CaseInsensitive) != 0)
                return true;
            place = SetPlaceOf(record.taskId, record.kind, record.description);
            return false;
        },
        invocation.stop);
    if (!read)
        return {{}, invocation.End(read)};
    if (!place)
        return {{}, invocation.End(CtlExit::Refused, u"There is no task \"%1\"."_s.arg(operand))};
    return {place};
}

/// The set's content; none, with an exit code and after a sentence, when it cannot be listed.
std::optional<SetContent> ReadSetOf(const Invocation& invocation, const BackupSetPlace& place,
                                    CtlExit& exit) {
    SetContent content = ReadSet(ServiceClient(), place, invocation.stop);
    if (content.found)
        return content;
    exit = invocation.End(CtlExit::Refused,
                          content.failure.isEmpty() ? u"No backup set found."_s : content.failure);
    return {};
}

CtlExit Snapshots(const Invocation& invocation) {
    const SetOperand set = FindSet(invocation, invocation.operands[0]);
    if (!set.place)
        return set.exit;
    const std::vector<Column> columns{{"name"_L1, "NAME"_L1},
                                      {"time"_L1, "TIME"_L1},
                                      {"full"_L1, "FULL"_L1},
                                      {"type"_L1, "TYPE"_L1},
                                      {"path"_L1, "PATH"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        CtlExit exit = CtlExit::Done;
        const auto content = ReadSetOf(invocation, *set.place, exit);
        if (!content)
            return exit;
        const QString type = SetTypeText(content->type); // null: none
        for (const Snapshot& snapshot : content->snapshots) {
            const QString time = TimeText(snapshot);
            const QString path = set.place->SnapshotPath(snapshot.name);
            if (!rows.Add({snapshot.name, time, snapshot.IsFull(), type, path}))
                break;
        }
        return exit;
    });
}

/// The snapshots of these names, the newest first; none, after a sentence, when one is not there.
std::optional<std::vector<Snapshot>> Named(const Invocation& invocation, const SetContent& content) {
    std::vector<Snapshot> named;
    for (const QString& name : invocation.operands.sliced(1)) {
        const auto found = std::find_if(content.snapshots.begin(), content.snapshots.end(),
                                        [&name](const Snapshot& each) { return each.name == name; });
        if (found == content.snapshots.end()) {
            invocation.End(CtlExit::Refused, u"There is no snapshot \"%1\"."_s.arg(name));
            return {};
        }
        named.push_back(*found);
    }
    std::sort(named.rbegin(), named.rend());
    named.erase(std::unique(named.begin(), named.end()), named.end());
    return named;
}

CtlExit DeleteSnapshots(const Invocation& invocation) {
    const SetOperand set = FindSet(invocation, invocation.operands[0]);
    CtlExit exit = set.exit;
    const auto content = set.place ? ReadSetOf(invocation, *set.place, exit) : std::nullopt;
    if (!content)
        return exit;
    const auto named = Named(invocation, *content);
    if (!named)
        return CtlExit::Refused;
    QStringList lost;
    for (const Snapshot& snapshot : LostWithout(*named, content->snapshots))
        lost += snapshot.name;
    if (!lost.isEmpty())
        return invocation.End(
            CtlExit::Refused,
            u"These could not be restored any more, and are not named too: %1."_s.arg(lost.join(u", "_s)));
    for (const Snapshot& snapshot : *named) {
        if (const QString refusal = DeletedPathRefusal(set.place->SnapshotPath(snapshot.name));
            !refusal.isEmpty())
            return invocation.End(CtlExit::Usage, refusal);
        const ServiceAnswer answer =
            DeleteSnapshot(ServiceClient(), *set.place, snapshot, content->snapshots.back(), invocation.stop);
        if (!answer) {
            invocation.End(CtlExit::Refused, u"\"%1\" was not deleted."_s.arg(snapshot.name));
            return invocation.End(answer);
        }
    }
    return CtlExit::Done;
}

RestoreDraft DraftOf(const Invocation& invocation) {
    RestoreDraft draft;
    draft.name = invocation.operands[0];
    draft.snapshot = *invocation.Option("--snapshot"_L1);
    draft.components = invocation.Values("--component"_L1);
    draft.exclusions = invocation.Values("--exclude"_L1);
    const auto policy = invocation.Option("--policy"_L1);
    if (policy)
        draft.policy = static_cast<RestorePolicy>(QString(PolicyNames).split(u'|').indexOf(*policy));
    const auto location = invocation.Option("--location"_L1);
    draft.elsewhere = location.has_value();
    draft.location = location.value_or(QString());
    return draft;
}

CtlExit Restore(const Invocation& invocation) {
    const RestoreDraft draft = DraftOf(invocation);
    if (!draft.snapshot.startsWith(u'/'))
        return invocation.End(CtlExit::Usage,
                              u"A snapshot's path begins with \"/\": \"snapshots\" shows it."_s);
    if (const QString refusal = RestoreRefusal(draft); !refusal.isEmpty())
        return invocation.End(CtlExit::Usage, refusal);
    const QByteArray record = RecordOf(FieldsOf(draft));
    if (invocation.Has("--dry-run"_L1))
        return invocation.Write(record);
    const CreationEnd end = CreateTask(ServiceClient(), TaskOf(draft), invocation.stop);
    if (end.end == Creation::Created)
        return CtlExit::Done;
    return invocation.End(end.silent ? CtlExit::Unreachable : CtlExit::Refused, end.why);
}

} // namespace

std::vector<Command> SnapshotCommands() {
    return {
        {"snapshots"_L1,
         {{"TASK"_L1}},
         {JsonOption},
         "The snapshots of a backup, the oldest first, and their paths."_L1,
         Snapshots},
        {"snapshot ls"_L1, {{"PATH"_L1}}, {JsonOption}, "Lists a folder of a snapshot."_L1, ListDavFolder},
        {"snapshot delete"_L1,
         {{"TASK"_L1}, {"NAME"_L1, Times::OneOrMore}},
         {},
         "Deletes snapshots, the newest first; none of them when a later one that is not named\n"
         "could not be restored without them."_L1,
         DeleteSnapshots},
        {"restore"_L1,
         {{"NAME"_L1}},
         {{"--snapshot"_L1, "PATH"_L1, "what \"snapshots\" shows as its path"_L1, Times::Once},
          {"--component"_L1, "C"_L1, "a path in it, or an application's key"_L1, Times::OneOrMore},
          {"--exclude"_L1, "C"_L1, "what is left out of those"_L1, Times::Any},
          {"--policy"_L1, PolicyNames, "what becomes of files that stand there; overwrite"_L1},
          {"--location"_L1, "PATH"_L1, "another place than it was at"_L1},
          {"--dry-run"_L1, {}, "sends nothing; writes the record"_L1}},
         "Makes a task of this name that restores from a snapshot."_L1,
         Restore},
    };
}
