#include "ctl/NewTask.h"
#include "ctl/Rows.h"

#include "plan/BackupSchedule.h"
#include "plan/BackupTask.h"
#include "plan/FileIndexing.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QLatin1String FormNames = "dialog|server|mirrored|snapshot"_L1;
constexpr QLatin1String ModeNames = "now|daily|weekly"_L1;

CtlExit Backups(const Invocation& invocation) {
    const std::vector<Column> columns{{"id"_L1, "ID"_L1},
                                      {"name"_L1, "NAME"_L1},
                                      {"type"_L1, "TYPE"_L1},
                                      {"state"_L1},
                                      {"stateText"_L1, "STATE"_L1},
                                      {"nextRun"_L1, "NEXT RUN"_L1},
                                      {"lastRun"_L1, "LAST RUN"_L1},
                                      {"sources"_L1},
                                      {"targets"_L1},
                                      {"exclusions"_L1}};
    const QStringList wanted = invocation.Values("--state"_L1);
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        return invocation.End(EnumAllTasks(
            [&](const TaskRecord& task) {
                const QString state = TaskStateText(task.state); // null: none
                if (!ListedFlavour(task) || (!wanted.isEmpty() && !wanted.contains(state)))
                    return true;
                const BackupKind kind = KindOfBackup(task.kind, task.description);
                const auto [sources, targets, exclusions] = DescriptionOf(kind, task.description);
                return rows.Add({task.taskId, task.name, BackupKindText(kind),
                                 static_cast<qint64>(task.state), state, task.nextRun, task.lastRun, &sources,
                                 &targets, &exclusions});
            },
            invocation.stop));
    });
}

/// The place of the option's word among those that it takes.
int ChoiceOf(const Invocation& invocation, QLatin1String option, QLatin1String names) {
    return int(QString(names).split(u'|').indexOf(invocation.Option(option).value_or(QString())));
}

QString TakeSchedule(const Invocation& invocation, ScheduleForm form, BackupSchedule& schedule) {
    schedule.mode = static_cast<ScheduleMode>(ChoiceOf(invocation, "--mode"_L1, ModeNames));
    const auto modes = ModesOf(form);
    if (std::find(modes.begin(), modes.end(), schedule.mode) == modes.end())
        return u"This form offers no --mode now: its backups run daily or weekly."_s;
    if (HasLink(form) && invocation.Has("--box"_L1))
        return u"This form has no box: --box is for mirrored and snapshot."_s;
    if (QString mistake = TakeStart(invocation, "--days"_L1, schedule); !mistake.isEmpty())
        return mistake;
    return ScheduleRefusal(schedule, form);
}

/// A line each; the string brings the end of its own.
CtlExit WriteLines(const Invocation& invocation, const ScheduleTexts& texts) {
    const QString link = texts.link.isEmpty() ? QString() : texts.link + u'\n';
    return invocation.Write((texts.string + link + texts.summary + u'\n').toUtf8());
}

CtlExit SaySchedule(const Invocation& invocation) {
    const auto form = static_cast<ScheduleForm>(ChoiceOf(invocation, "--form"_L1, FormNames));
    BackupSchedule schedule = DefaultSchedule(form, QDateTime::currentDateTime());
    if (const QString mistake = TakeSchedule(invocation, form, schedule); !mistake.isEmpty())
        return invocation.End(CtlExit::Usage, mistake);
    const ScheduleTexts texts = ConfirmedTexts(schedule, form);
    if (!invocation.Has(JsonOption.name))
        return WriteLines(invocation, texts);
    return WriteRows(invocation, {{"string"_L1}, {"link"_L1}, {"summary"_L1}}, [&texts](RowWriter& rows) {
        rows.Add({texts.string, texts.link.isEmpty() ? QStringView() : texts.link, texts.summary});
        return CtlExit::Done;
    });
}

/// Waits until the monitor has done what it was told.
CtlExit WaitForIndex(const Invocation& given) {
    const Invocation invocation = given.StoppedByInterrupt();
    constexpr std::chrono::minutes Longest{10};
    constexpr std::chrono::milliseconds Interval{500};
    for (auto waited = std::chrono::milliseconds(0); waited < Longest; waited += Interval) {
        const FileIndexing indexing = ReadFileIndexing(invocation.stop);
        if (indexing.end == FileIndexing::End::Built)
            return CtlExit::Done;
        if (indexing.end == FileIndexing::End::Gone)
            return invocation.End(CtlExit::Refused, FileIndexLostText());
        if (!invocation.Pause(Interval))
            return invocation.End(CtlExit::Refused, u"Stopped before the index was built."_s);
    }
    return invocation.End(CtlExit::Refused, u"The index was not built within 10 minutes."_s);
}

CtlExit BuildIndex(const Invocation& invocation) {
    if (const QString refusal = FileIndexRefusal(AskFileMonitor(invocation.stop)); !refusal.isEmpty())
        return invocation.End(CtlExit::Refused, refusal);
    invocation.Has("--force"_L1) ? ForceFileIndex() : BeginFileIndex();
    return invocation.Has("--wait"_L1) ? WaitForIndex(invocation) : CtlExit::Done;
}

} // namespace

std::vector<Command> BackupCommands() {
    return {
        {"backups"_L1,
         {},
         {{"--state"_L1, "Pending|Running|Paused|Failed|Completed"_L1, "only those in this state"_L1,
           Times::Any},
          JsonOption},
         "The backups of both lists, latest start first; none that has completed for good. As JSON\n"
         "with what they take, where they put it and what they leave out."_L1,
         Backups},
        {"index"_L1,
         {},
         {{"--force"_L1, {}, "build it anew where it was built before"_L1},
          {"--wait"_L1, {}, "end when it has been built, after 10 minutes at most"_L1}},
         "Lets the file monitor build the index that backups by file type are made from."_L1,
         BuildIndex},
        {"schedule"_L1,
         {},
         {{"--form"_L1, FormNames, "the form that would be confirmed"_L1, Times::Once},
          {"--mode"_L1, ModeNames, "when changes are backed up"_L1, Times::Once},
          {"--date"_L1, "Y-M-D"_L1, "the first day, also told where it counts for nothing"_L1, Times::Once},
          {"--time"_L1, "H:M:S"_L1, "the time of day, as the computer's clock shows it"_L1, Times::Once},
          {"--days"_L1, "DAYS"_L1, "as in sun,mon; '' for none; all seven when it is not given"_L1},
          {"--box"_L1, "on|off"_L1, "mirrored: skip the first upload; snapshot: run at once"_L1},
          JsonOption},
         "The schedule of a backup as the service takes it, and in words: the string, the link of\n"
         "a dialog's form, and the summary. Asks nobody."_L1,
         SaySchedule},
    };
}
