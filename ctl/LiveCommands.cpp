#include "ctl/Rows.h"

#include "zep/LiveCounters.h"

#include <algorithm>
#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto RedrawInterval = 1s;
constexpr QByteArrayView ClearScreen = "\x1b[H\x1b[J";
const QString NothingKnown = u"The service tells nothing about what runs: it is not running."_s;

const std::vector<Column> Columns{{"taskId"_L1},
                                  {"taskName"_L1, "TASK"_L1},
                                  {"operation"_L1, "OPERATION"_L1},
                                  {"file"_L1, "FILE"_L1},
                                  {"target"_L1, "TARGET"_L1},
                                  {"status"_L1, "STATUS"_L1},
                                  {"bytesDone"_L1, "DONE"_L1},
                                  {"bytesTotal"_L1, "TOTAL"_L1}};

/// False when the service tells nothing.
bool AddRunning(const LiveCounters& counters, RowWriter& rows) {
    return counters.ZEPEnumTasksWithCallBackEx(QString(), [&rows](const RunningSubTask& running) {
        return rows.Add({running.taskId, running.taskName, running.operation, running.fileName,
                         running.target, running.status,
                         static_cast<qint64>(std::min(running.bytesDone, running.bytesTotal)),
                         static_cast<qint64>(running.bytesTotal)});
    });
}

CtlExit Running(const Invocation& invocation) {
    return WriteRows(invocation, Columns, [&](RowWriter& rows) {
        return AddRunning(LiveCounters(), rows) ? CtlExit::Done
                                                : invocation.End(CtlExit::Unreachable, NothingKnown);
    });
}

CtlExit Watch(const Invocation& invocation) {
    const LiveCounters counters;
    do {
        QByteArray frame = ClearScreen.toByteArray();
        RowWriter rows(RowFormat::Table, Columns, [&frame](QByteArrayView text) {
            frame.append(text.data(), text.size());
            return true;
        });
        const bool known = AddRunning(counters, rows);
        rows.Finish(known);
        if (!known)
            frame += NothingKnown.toUtf8() + '\n';
        if (invocation.out.write(frame) < 0)
            break; // whoever looked on has gone
    } while (invocation.Pause(RedrawInterval));
    return CtlExit::Done;
}

} // namespace

std::vector<Command> LiveCommands() {
    return {
        {"running"_L1,
         {},
         {JsonOption},
         "The sub-tasks that run now, with the octets that they moved."_L1,
         Running},
        {"watch"_L1, {}, {}, "Shows what runs, redrawn each second until Ctrl+C."_L1, Watch},
    };
}
