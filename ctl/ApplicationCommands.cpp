#include "ctl/Rows.h"

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

} // namespace

std::vector<Command> ApplicationCommands() {
    return {{"writers"_L1,
             {},
             {JsonOption},
             "The applications of this computer that can be backed up: their keys, their names, and their\n"
             "components. May take two minutes."_L1,
             ListWriters}};
}
