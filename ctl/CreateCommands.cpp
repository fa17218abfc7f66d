#include "ctl/NewTask.h"

#include "plan/DraftRefusal.h"
#include "plan/FileTypes.h"

using namespace Qt::Literals::StringLiterals;

namespace {

BackupFilter FilterOf(const Invocation& invocation) {
    BackupFilter filter;
    filter.types = JoinFileTypes(SplitFileTypes(invocation.Option("--include-types"_L1).value_or(QString())));
    filter.excludedTypes = invocation.Option("--exclude-types"_L1).value_or(filter.excludedTypes);
    filter.excludedFiles = invocation.Option("--exclude-files"_L1).value_or(filter.excludedFiles);
    filter.skipSystem = !invocation.Has("--system"_L1);
    filter.skipHidden = !invocation.Has("--hidden"_L1);
    return filter;
}

BackupDraft DraftOf(const Invocation& invocation) {
    BackupDraft draft;
    draft.name = invocation.operands[0];
    draft.flavour = invocation.Has("--snapshot"_L1) ? BackupFlavour::Snapshot : BackupFlavour::Mirrored;
    draft.sources = invocation.Values("--source"_L1);
    draft.target = invocation.Option("--to"_L1).value_or(QString());
    draft.exclusions = invocation.Values("--exclude"_L1);
    draft.filter = FilterOf(invocation);
    return draft;
}

CtlExit CreateBackup(const Invocation& invocation) {
    BackupDraft draft = DraftOf(invocation);
    TaskTerms terms;
    if (const QString mistake = TakeTerms(invocation, ScheduleFormOf(draft.flavour), terms);
        !mistake.isEmpty())
        return invocation.End(CtlExit::Usage, mistake);
    draft.schedule = terms.schedule;
    draft.retention = terms.retention;
    draft.encrypted = terms.encrypted;
    if (const QString refusal = DraftRefusal(draft); !refusal.isEmpty())
        return invocation.End(CtlExit::Usage, refusal);
    return MakeTask(invocation, TaskOf(draft), draft.encrypted);
}

} // namespace

std::vector<Command> CreateCommands() {
    return {
        {"backup create"_L1,
         {{"NAME"_L1}},
         WithTaskOptions({
             {"--source"_L1, "FOLDER"_L1, "a folder of this computer, with all below it"_L1,
              Times::OneOrMore},
             {"--to"_L1, "TARGET"_L1, "the folder of the storage, as in /Home/Backup"_L1, Times::Once},
             {"--exclude"_L1, "FOLDER"_L1, "left out, with all below it"_L1, Times::Any},
             {"--snapshot"_L1, {}, "keep snapshots instead of a mirror"_L1},
             {"--include-types"_L1, "TEXT"_L1, "these extensions only, as in '.txt, .doc'; '' for all"_L1},
             {"--exclude-types"_L1, "TEXT"_L1, "not these; .tmp when it is not given"_L1},
             {"--exclude-files"_L1, "TEXT"_L1, "not files of these names, with semicolons between them"_L1},
             {"--system"_L1, {}, "system files too"_L1},
             {"--hidden"_L1, {}, "hidden files too"_L1},
         }),
         "Makes a backup of folders, as the wizard does at its end. Without a schedule a mirrored\n"
         "one runs when something changes, and snapshots are taken daily. NAME is listed with\n"
         "[Encrypted] behind it where that is wished."_L1,
         CreateBackup,
         {ModeAlternatives()}},
    };
}
