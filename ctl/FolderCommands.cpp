#include "ctl/Rows.h"

#include "service/CloudFolders.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const ListSetting& ListOf(const Invocation& invocation) {
    return invocation.operands[0] == "encrypted"_L1 ? EncryptedFolders : CompressedFolders;
}

CtlExit AddPaths(RowWriter& rows, const QStringList& paths) {
    for (const QString& path : paths)
        rows.Add({path});
    return CtlExit::Done;
}

CtlExit ListFolders(const Invocation& invocation, RowWriter& rows) {
    const ListSetting& list = ListOf(invocation);
    const ServiceAnswer answer = ServiceClient().GetSetting(QString::fromLatin1(list.name), invocation.stop);
    switch (SettingStateOf(answer)) {
    case SettingState::Set:
        return AddPaths(rows, EntriesOf(SettingText(answer.body)));
    case SettingState::NotSet:
        return CtlExit::Done;
    case SettingState::NotRead:
        break;
    }
    return answer ? invocation.EndBrokenOff() : invocation.End(answer);
}

/// What is to be known of an encrypted folder that was added.
void TellPassword(const Invocation& invocation) {
    switch (ReadPasswordState(ServiceClient(), invocation.stop)) {
    case PasswordState::Missing:
        invocation.End(CtlExit::Done, u"Encryption requires a password, and none is set."_s);
        break;
    case PasswordState::NotRead:
        invocation.End(CtlExit::Done, u"The service does not tell whether an encryption password is set."_s);
        break;
    case PasswordState::Set:
        break;
    }
}

/// Ends a change, and writes as JSON what the list holds then, as far as that is known.
CtlExit EndChange(const Invocation& invocation, const ListChange& change) {
    CtlExit exit = CtlExit::Done;
    if (!change.stored)
        exit = invocation.End(change.silent ? CtlExit::Unreachable : CtlExit::Refused, change.failure);
    if (!invocation.Has("--json"_L1))
        return exit;
    const CtlExit written = WriteRows(invocation, {{"path"_L1}}, [&change, exit](RowWriter& rows) {
        AddPaths(rows, change.entries.value_or(QStringList()));
        return exit;
    });
    return exit == CtlExit::Done ? written : exit;
}

CtlExit Folders(const Invocation& invocation) {
    const ListSetting& list = ListOf(invocation);
    if (const auto path = invocation.Option("--add"_L1)) {
        if (const QString refusal = EntryRefusal(list, *path); !refusal.isEmpty())
            return invocation.End(CtlExit::Usage, refusal);
        const ListChange change = AddFolder(ServiceClient(), list, *path, invocation.stop);
        if (change.stored && &list == &EncryptedFolders)
            TellPassword(invocation);
        return EndChange(invocation, change);
    }
    if (const auto path = invocation.Option("--remove"_L1))
        return EndChange(invocation,
                         RemoveFolders(ServiceClient(), list, {ListedFolder{*path}}, invocation.stop));
    return WriteRows(invocation, {{"path"_L1, "PATH"_L1}},
                     [&invocation](RowWriter& rows) { return ListFolders(invocation, rows); });
}

} // namespace

std::vector<Command> FolderCommands() {
    return {
        {"folders"_L1,
         {{"encrypted|compressed"_L1}},
         {{"--add"_L1, "PATH"_L1, "puts a folder of the storage at the end, as in /Home/Letters"_L1},
          {"--remove"_L1, "PATH"_L1, "takes the first of this very path out"_L1},
          JsonOption},
         "The folders whose files the service encrypts or compresses. A change is written upon\n"
         "what the service keeps then, and read back; with --json the list is written as it is\n"
         "kept then."_L1,
         Folders,
         {{{"--add"_L1, "--remove"_L1}}}},
    };
}
