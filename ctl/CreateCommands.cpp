#include "ctl/NewTask.h"

#include "plan/BackupFigures.h"
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

/// Of a backup by file type, which takes no folders and has no other filter.
void TakeTypes(const QString& types, BackupDraft& draft) {
    draft.sources = {u"@"_s};
    draft.filter = FilterOfTypes(JoinFileTypes(SplitFileTypes(types)));
}

BackupDraft DraftOf(const Invocation& invocation) {
    BackupDraft draft;
    draft.name = invocation.operands[0];
    draft.flavour = invocation.Has("--snapshot"_L1) ? BackupFlavour::Snapshot : BackupFlavour::Mirrored;
    draft.sources = invocation.Values("--source"_L1);
    draft.target = invocation.Option("--to"_L1).value_or(QString());
    draft.exclusions = invocation.Values("--exclude"_L1);
    draft.filter = FilterOf(invocation);
    if (const auto types = invocation.Option("--types"_L1))
        TakeTypes(*types, draft);
    return draft;
}

/// Counts what the backup would take, and says so beside the record.
CtlExit WriteCount(const Invocation& invocation, const BackupDraft& draft) {
    const Invocation stoppable = invocation.StoppedByInterrupt();
    const auto note = std::make_shared<FiguresNote>();
    AwaitCount(draft, note, stoppable.stop);
    const BackupFigures figures = note->Read();
    invocation.error.write(FigureLines(figures).join(u'\n').toUtf8() + '\n');
    return figures.isWhole && figures.missing.isEmpty() && figures.unread == 0 ? CtlExit::Done
                                                                               : CtlExit::Refused;
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
    const bool counts = invocation.Has("--count"_L1);
    if (counts && !invocation.Has("--dry-run"_L1))
        return invocation.End(CtlExit::Usage, u"--count goes with --dry-run."_s);
    const CtlExit made = MakeTask(invocation, TaskOf(draft), draft.encrypted);
    return counts && made == CtlExit::Done ? WriteCount(invocation, draft) : made;
}

} // namespace

std::vector<Command> CreateCommands() {
    return {
        {"backup create"_L1,
         {{"NAME"_L1}},
         WithTaskOptions({
             {"--source"_L1, "FOLDER"_L1, "a folder of this computer, with all below it"_L1, Times::Any},
             {"--types"_L1, "TEXT"_L1, "all files of these extensions, as in '.txt, .doc'; '' for all"_L1},
             {"--to"_L1, "TARGET"_L1, "the folder of the storage, as in /Home/Backup"_L1, Times::Once},
             {"--exclude"_L1, "FOLDER"_L1, "left out, with all below it"_L1, Times::Any},
             {"--snapshot"_L1, {}, "keep snapshots instead of a mirror"_L1},
             {"--include-types"_L1, "TEXT"_L1, "these extensions only, as in '.txt, .doc'; '' for all"_L1},
             {"--exclude-types"_L1, "TEXT"_L1, "not these; .tmp when it is not given"_L1},
             {"--exclude-files"_L1, "TEXT"_L1, "not files of these names, with semicolons between them"_L1},
             {"--system"_L1, {}, "system files too"_L1},
             {"--hidden"_L1, {}, "hidden files too"_L1},
             {"--count"_L1,
              {},
              "with --dry-run: count what would be taken, and tell it beside the record"_L1},
         }),
         "Makes a backup of folders, or of all files of some types, as the wizards do at their end.\n"
         "Without a schedule a mirrored one runs when something changes, and snapshots are taken daily.\n"
         "NAME is listed with [Encrypted] behind it where that is wished."_L1,
         CreateBackup,
         {ModeAlternatives(),
          {{"--source"_L1, "--types"_L1}, true},
          {{"--types"_L1, "--include-types"_L1}},
          {{"--types"_L1, "--exclude-types"_L1}},
          {{"--types"_L1, "--exclude-files"_L1}},
          {{"--types"_L1, "--system"_L1}},
          {{"--types"_L1, "--hidden"_L1}},
          {{"--types"_L1, "--count"_L1}}}},
    };
}
