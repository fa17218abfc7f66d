#include "ctl/NewTask.h"
#include "ctl/Rows.h"

#include "plan/DraftRefusal.h"
#include "plan/Writers.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// The exit code of a reading, with a sentence when it is not Done.
CtlExit End(const Invocation& invocation, const WriterReading& reading) {
    if (!reading.answer)
        return invocation.End(reading.answer);
    return reading.failure.isEmpty() ? CtlExit::Done : invocation.End(CtlExit::Refused, reading.failure);
}

CtlExit ListWriters(const Invocation& invocation) {
    const std::vector<Column> columns{
        {"key"_L1, "KEY"_L1}, {"name"_L1, "NAME"_L1}, {"components"_L1, "COMPONENTS"_L1}};
    return WriteRows(invocation, columns, [&invocation](RowWriter& rows) {
        const WriterReading reading = ReadWriters(ServiceClient(), invocation.stop);
        for (const Writer& writer : reading.writers) {
            const QString key = WriterKey(writer);
            const QString name = WriterDisplayName(writer.name);
            if (!rows.Add({key, name, &writer.components}))
                break;
        }
        return End(invocation, reading);
    });
}

CtlExit BackUpApplications(const Invocation& invocation) {
    TaskTerms terms;
    if (const QString mistake = TakeTerms(invocation, ScheduleForm::Snapshot, terms); !mistake.isEmpty())
        return invocation.End(CtlExit::Usage, mistake);
    ApplicationDraft draft;
    draft.name = invocation.operands[0];
    draft.keys = invocation.Values("--select"_L1);
    draft.target = invocation.Option("--to"_L1).value_or(QString());
    draft.exclusions = invocation.Values("--exclude"_L1);
    draft.schedule = terms.schedule;
    draft.retention = terms.retention;
    draft.encrypted = terms.encrypted;
    if (const QString refusal = DraftRefusal(draft); !refusal.isEmpty())
        return invocation.End(CtlExit::Usage, refusal);
    return MakeTask(invocation, TaskOf(draft), draft.encrypted);
}

} // namespace

std::vector<Command> ApplicationCommands() {
    return {{"backup apps"_L1,
             {{"NAME"_L1}},
             WithTaskOptions({
                 {"--select"_L1, "KEY"_L1, "an application or a component, as \"writers\" lists them"_L1,
                  Times::OneOrMore},
                 {"--to"_L1, "TARGET"_L1, "the folder of the storage, as in /Home/Backup"_L1, Times::Once},
                 {"--exclude"_L1, "KEY"_L1, "a component that is left out"_L1, Times::Any},
             }),
             "Makes a backup of applications, as the wizard does at its end: daily unless it is told\n"
             "otherwise. The key of a component is that of its application, a slash and its name."_L1,
             BackUpApplications,
             {ModeAlternatives()}},
            {"writers"_L1,
             {},
             {JsonOption},
             "The applications of this computer that can be backed up: their keys, their names, and their\n"
             "components. May take two minutes."_L1,
             ListWriters}};
}
