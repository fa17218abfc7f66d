#include "ctl/Rows.h"

#include "platform/Sleep.h"
#include "zep/LiveCounters.h"

#include <algorithm>
#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto RedrawInterval = 1s;
constexpr QByteArrayView ClearScreen = "\x1b[H\x1b[J";
const QString NothingKnown = u"The service tells nothing about what runs: it is not running."_s;

const std::vector<TextColumn> Columns{{"TASK"_L1, "taskName"_L1},   {"OPERATION"_L1, "operation"_L1},
                                      {"FILE"_L1, "file"_L1},       {"TARGET"_L1, "target"_L1},
                                      {"STATUS"_L1, "status"_L1},   {"DONE"_L1, "bytesDone"_L1},
                                      {"TOTAL"_L1, "bytesTotal"_L1}};

QJsonObject RunningObject(const RunningSubTask& running) {
    return {{u"taskId"_s, running.taskId},
            {u"taskName"_s, running.taskName},
            {u"operation"_s, running.operation},
            {u"file"_s, running.fileName},
            {u"target"_s, running.target},
            {u"status"_s, running.status},
            {u"bytesDone"_s, static_cast<qint64>(std::min(running.bytesDone, running.bytesTotal))},
            {u"bytesTotal"_s, static_cast<qint64>(running.bytesTotal)}};
}

/// None when the service tells nothing.
std::optional<QJsonArray> RunningRows(const LiveCounters& counters) {
    QJsonArray rows;
    const bool known = counters.ZEPEnumTasksWithCallBackEx(QString(), [&rows](const RunningSubTask& running) {
        rows += RunningObject(running);
        return true;
    });
    return known ? std::optional(rows) : std::nullopt;
}

CtlExit Running(const Invocation& invocation) {
    const auto rows = RunningRows(LiveCounters());
    if (!rows)
        return invocation.End(CtlExit::Unreachable, NothingKnown);
    return WriteRows(invocation, {}, *rows, Columns);
}

CtlExit Watch(const Invocation& invocation) {
    const LiveCounters counters;
    do {
        const auto rows = RunningRows(counters);
        const QString frame = rows ? TextTable(*rows, Columns) : NothingKnown + u'\n';
        if (invocation.out.write(ClearScreen.toByteArray() + frame.toUtf8()) < 0)
            break; // whoever looked on has gone
    } while (platform::SleepUnlessStopped(invocation.stop, RedrawInterval));
    return CtlExit::Done;
}

} // namespace

std::vector<Command> LiveCommands() {
    return {
        {"running"_L1,
         {},
         {{"--json"_L1, {}}},
         "The sub-tasks that run now, with the octets that they moved."_L1,
         Running},
        {"watch"_L1, {}, {}, "Shows what runs, redrawn each second until Ctrl+C."_L1, Watch},
    };
}
