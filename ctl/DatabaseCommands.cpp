#include "ctl/CommandLine.h"
#include "ctl/Rows.h"
#include "ctl/TaskOperand.h"

#include "platform/Console.h"
#include "stores/AuditTraceStore.h"
#include "stores/ProcessLogStore.h"
#include "stores/SchedulerStore.h"
#include "stores/SubTaskStore.h"
#include "stores/TaskState.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::seconds FollowInterval{1};
/// The words stand for the levels 0, 1 and 2.
constexpr CommandOption LevelOption{"--level"_L1, "info|warning|error"_L1,
                                    "of the traces found, only those of this level"_L1, Times::Any};

CtlExit Tasks(const Invocation& invocation) {
    const std::vector<Column> columns{
        {"id"_L1, "ID"_L1},           {"type"_L1, "TYPE"_L1},        {"name"_L1, "NAME"_L1},
        {"description"_L1},           {"scheduleType"_L1},           {"state"_L1},
        {"stateText"_L1, "STATE"_L1}, {"lastRun"_L1, "LAST RUN"_L1}, {"nextRun"_L1, "NEXT RUN"_L1}};
    const QStringList wanted = invocation.Values("--state"_L1);
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        return invocation.End(EnumAllTasks(
            [&](const TaskRecord& task) {
                const QString state = TaskStateText(task.state); // null: none
                return (!wanted.isEmpty() && !wanted.contains(state)) ||
                       rows.Add({task.taskId, task.kind, task.name, task.description,
                                 qint64{task.schedule.type}, static_cast<qint64>(task.state), state,
                                 task.lastRun, task.nextRun});
            },
            invocation.stop));
    });
}

/// One or two numbers with a comma between them; none when the text is anything else.
std::optional<std::pair<int, int>> ParseStates(const QString& text) {
    const QStringList parts = text.split(u',');
    bool firstIsNumber = false;
    bool lastIsNumber = false;
    const int first = parts.first().toInt(&firstIsNumber);
    const int last = parts.last().toInt(&lastIsNumber);
    if (parts.size() > 2 || !firstIsNumber || !lastIsNumber)
        return {};
    return std::pair(first, last);
}

CtlExit SubTasks(const Invocation& invocation) {
    const auto text = invocation.Option("--states"_L1);
    const auto states = text ? ParseStates(*text) : std::nullopt;
    if (text && !states)
        return invocation.End(CtlExit::Usage, u"--states takes one or two numbers, as in 0 or 3,4."_s);
    const TaskOperand task = FindTask(invocation, invocation.operands[0]);
    if (!task.id)
        return task.exit;
    const std::vector<Column> columns{
        {"subtask"_L1, "SUBTASK"_L1},       {"type"_L1, "TYPE"_L1}, {"parameter1"_L1, "PARAMETER1"_L1},
        {"parameter2"_L1, "PARAMETER2"_L1}, {"note"_L1, "NOTE"_L1}, {"size"_L1, "SIZE"_L1},
        {"retries"_L1, "RETRIES"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        const SubTaskCallback add = [&rows](const SubTaskRecord& subTask) {
            return rows.Add({qint64{subTask.subTaskNumber}, subTask.text1, subTask.text2, subTask.text3,
                             subTask.text4, subTask.number5, subTask.number6});
        };
        return invocation.End(
            states ? EnumSubTasks(*task.id, states->first, states->second, add, invocation.stop)
                   : EnumSubTasks(*task.id, add, invocation.stop));
    });
}

CtlExit History(const Invocation& invocation) {
    const TaskOperand task = FindTask(invocation, invocation.operands[0]);
    if (!task.id)
        return task.exit;
    const std::vector<Column> columns{{"startTime"_L1, "START"_L1},
                                      {"stopTime"_L1, "STOP"_L1},
                                      {"totalSubtasks"_L1, "TOTAL"_L1},
                                      {"failedSubtasks"_L1, "FAILED"_L1},
                                      {"processedSubtasks"_L1, "PROCESSED"_L1},
                                      {"stopReason"_L1, "REASON"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        std::vector<ProcessLogRecord> log;
        const ReadResult read = FillProcessLog(*task.id, log, invocation.stop);
        for (const ProcessLogRecord& run : log)
            rows.Add({run.startTime, run.stopTime, qint64{run.totalSubTasks}, qint64{run.failedSubTasks},
                      qint64{run.processedSubTasks}, run.stopReason});
        return invocation.End(read);
    });
}

/// Fills the filter by the options. Returns what is wrong with them, if anything.
QString ReadFilter(const Invocation& invocation, AuditFilter& filter) {
    filter.containing = invocation.Option("--contains"_L1);
    if (filter.containing && filter.containing->contains(u'\''))
        return u"--contains takes no quotation mark."_s;
    filter.maximum = invocation.Option("--max"_L1).value_or(u"200"_s);
    bool isNumber = false;
    filter.maximum = QString::number(filter.maximum.toUInt(&isNumber));
    if (!isNumber)
        return u"--max takes a number; 0 is all."_s;
    const auto from = invocation.Option("--from"_L1);
    const auto to = invocation.Option("--to"_L1);
    if (!from && !to)
        return {};
    const QDate first = from ? QDate::fromString(*from, Qt::ISODate) : QDate(1, 1, 1);
    const QDate last = to ? QDate::fromString(*to, Qt::ISODate) : first;
    if (!first.isValid() || !last.isValid())
        return u"A day is written as in 2026-03-01."_s;
    filter.between = std::pair(AuditTime(first), AuditTime(last));
    return {};
}

/// The traces of the levels that are asked for.
class AuditRows {
public:
    AuditRows(const Invocation& invocation, RowWriter& rows) : m_rows(rows) {
        for (const QString& level : invocation.Values(LevelOption.name))
            m_levels.push_back(int(ChoicesOf(LevelOption.value).indexOf(level)));
    }

    /// False when no more are taken.
    bool Add(const AuditRecord& record) {
        const bool wanted =
            m_levels.empty() || std::find(m_levels.begin(), m_levels.end(), record.level) != m_levels.end();
        return !wanted || m_rows.Add({qint64{record.level}, record.time, AuditMessage(record.trace)});
    }

private:
    RowWriter& m_rows;
    std::vector<int> m_levels;
};

/// A writer that holds its lock for a moment is waited for.
bool IsInTheWay(const ReadResult& read) {
    return read.outcome == ReadOutcome::Busy || read.outcome == ReadOutcome::HotJournal;
}

CtlExit Follow(const Invocation& invocation, const AuditFilter& filter, AuditRows& audit, RowWriter& rows) {
    const std::stop_token stop =
        invocation.stop.stop_possible() ? invocation.stop : platform::StopOnInterrupt();
    qint64 end = 0;
    std::vector<AuditRecord> there;
    ReadResult read = AuditTraceStore(stop).EnumTraces(filter, end, [&there](const AuditRecord& record) {
        there.push_back(record);
        return true;
    });
    bool taken = true;
    for (; taken && !there.empty(); there.pop_back())
        taken = audit.Add(there.back());
    there = {};
    while (read && taken && rows.Push() && invocation.Pause(FollowInterval, stop)) {
        const auto add = [&](const AuditRecord& record) { return taken = audit.Add(record); };
        read = AuditTraceStore(stop).EnumNewTraces(filter, end, add);
        if (IsInTheWay(read))
            read = {};
    }
    return read.outcome == ReadOutcome::Stopped ? CtlExit::Done : invocation.End(read);
}

CtlExit Audit(const Invocation& invocation) {
    AuditFilter filter;
    const QString mistake = ReadFilter(invocation, filter);
    if (!mistake.isEmpty())
        return invocation.End(CtlExit::Usage, mistake);
    const std::vector<Column> columns{
        {"level"_L1, "LEVEL"_L1}, {"time"_L1, "TIME"_L1}, {"trace"_L1, "TRACE"_L1}};
    return WriteRows(invocation, columns, [&](RowWriter& rows) {
        AuditRows audit(invocation, rows);
        if (invocation.Has(FollowOption.name))
            return Follow(invocation, filter, audit, rows);
        const auto add = [&audit](const AuditRecord& record) { return audit.Add(record); };
        return invocation.End(AuditTraceStore(invocation.stop).EnumTraces(filter, add));
    });
}

} // namespace

std::vector<Command> DatabaseCommands() {
    const Operand task{"TASK"_L1};
    return {
        {"tasks"_L1,
         {},
         {{"--state"_L1, "Pending|Running|Paused|Failed|Completed"_L1, "only those in this state"_L1,
           Times::Any},
          JsonOption},
         "The tasks of the service, latest start first."_L1,
         Tasks},
        {"subtasks"_L1,
         {task},
         {{"--states"_L1, "A[,B]"_L1, "only those in one of two states, by number"_L1}, JsonOption},
         "The sub-tasks of a task in their order. Their states are 0 pending, 1 running,\n"
         "2 done, 3 to be tried again, 4 failed."_L1,
         SubTasks},
        {"history"_L1, {task}, {JsonOption}, "The runs of a task that have ended."_L1, History},
        {"audit"_L1,
         {},
         {{"--contains"_L1, "TEXT"_L1, "only traces that hold the text"_L1},
          {"--from"_L1, "DATE"_L1, "from the start of this day, as 2026-03-01"_L1},
          {"--to"_L1, "DATE"_L1, "to the start of this day; to now when it is that of --from"_L1},
          {"--max"_L1, "N"_L1, "at most so many (200), all when 0"_L1},
          LevelOption,
          FollowOption,
          JsonOption},
         "The audit trace, newest first; level 0 informs, 1 warns, 2 is an error."_L1,
         Audit},
    };
}
