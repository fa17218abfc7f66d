#include "ctl/TaskOperand.h"

#include "platform/ServiceControl.h"
#include "service/RequestText.h"
#include "stores/ProcessLogStore.h"
#include "stores/SchedulerStore.h"
#include "stores/TaskState.h"
#include "zep/SysInfo.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto PollInterval = 250ms;

using TaskOperation = ServiceAnswer (ServiceClient::*)(const QString&, std::stop_token) const;

/// Whether the identifier reaches the service as it stands; it is told when not.
bool CanBeSent(const Invocation& invocation, const QString& id) {
    const QStringList lost = LostInQuery(id);
    if (!lost.isEmpty())
        invocation.End(CtlExit::Usage,
                       u"A request cannot carry %1 in an identifier."_s.arg(lost.join(u", "_s)));
    return lost.isEmpty();
}

CtlExit Send(const Invocation& invocation, const QString& id, TaskOperation operation) {
    if (!CanBeSent(invocation, id))
        return CtlExit::Usage;
    return invocation.End((ServiceClient().*operation)(id, invocation.stop));
}

template <TaskOperation operation>
CtlExit CommandTask(const Invocation& invocation) {
    const TaskOperand task = FindTask(invocation, invocation.operands[0]);
    return task.id ? Send(invocation, *task.id, operation) : task.exit;
}

/// What went well says so on standard output, what did not on standard error, both in the service's words.
CtlExit EndOfRun(const Invocation& invocation, const QString& id, const ProcessLogRecord& run) {
    const TaskLookup lookup = GetTaskInfo(id, invocation.stop);
    const auto state = lookup.task.state;
    const bool halted = lookup && (state == TaskState::Paused || state == TaskState::Failed);
    if (halted || run.failedSubTasks > 0)
        return invocation.End(CtlExit::Refused, run.stopReason);
    return invocation.Write(run.stopReason.toUtf8() + '\n');
}

bool HasServiceStopped(const std::stop_token& stop) {
    return platform::QueryService("brengroupsvc", ZEPSysInfoIsServer(), stop).state ==
           platform::ServiceState::Stopped;
}

/// Waits until the log holds a run that is not among those of `before`; the service may drop old ones
/// meanwhile.
CtlExit WaitForRun(const Invocation& invocation, const QString& id,
                   const std::vector<ProcessLogRecord>& before) {
    const auto isNew = [&before](const ProcessLogRecord& run) {
        return std::find(before.begin(), before.end(), run) == before.end();
    };
    do {
        const bool stopped = HasServiceStopped(invocation.stop); // asked first: what it wrote is read then
        std::vector<ProcessLogRecord> log;
        const ReadResult read = FillProcessLog(id, log, invocation.stop);
        if (read.outcome == ReadOutcome::Stopped)
            break;
        if (!read)
            return invocation.End(read);
        if (const auto run = std::find_if(log.begin(), log.end(), isNew); run != log.end())
            return EndOfRun(invocation, id, *run);
        const TaskLookup lookup = GetTaskInfo(id, invocation.stop);
        if (lookup.read.outcome == ReadOutcome::Stopped)
            break;
        if (!lookup.read)
            return invocation.End(lookup.read);
        if (!lookup.found)
            return invocation.End(CtlExit::Refused, u"The task was deleted before its run ended."_s);
        if (stopped)
            return invocation.End(CtlExit::Unreachable, u"The service stopped before the run ended."_s);
    } while (invocation.Pause(PollInterval));
    return invocation.End(CtlExit::Unreachable,
                          u"Stopped before the run ended. The service goes on with it."_s);
}

CtlExit StartTask(const Invocation& invocation) {
    const TaskOperand task = FindTask(invocation, invocation.operands[0]);
    if (!task.id)
        return task.exit;
    const bool waits = invocation.Has("--wait"_L1);
    std::vector<ProcessLogRecord> before;
    if (const ReadResult read = waits ? FillProcessLog(*task.id, before, invocation.stop) : ReadResult();
        !read)
        return invocation.End(read);
    const CtlExit exit = Send(invocation, *task.id, &ServiceClient::StartTaskNow);
    return exit == CtlExit::Done && waits ? WaitForRun(invocation.StoppedByInterrupt(), *task.id, before)
                                          : exit;
}

bool IsIdentifier(const Invocation& invocation, const QString& operand) {
    const bool is = operand.startsWith(QLatin1Char(IdentifierMark));
    if (!is)
        invocation.End(
            CtlExit::Usage,
            u"Deleting takes the task's identifier, which begins with \"{\": \"tasks\" shows it."_s);
    return is;
}

CtlExit DeleteTask(const Invocation& invocation) {
    const QString& id = invocation.operands[0];
    return IsIdentifier(invocation, id) ? Send(invocation, id, &ServiceClient::DeleteTask) : CtlExit::Usage;
}

CtlExit DeleteSubTask(const Invocation& invocation) {
    const QString& id = invocation.operands[0];
    bool isNumber = false;
    const int number = invocation.operands[1].toInt(&isNumber);
    if (!isNumber)
        return invocation.End(CtlExit::Usage, u"N is the number of a sub-task, as \"subtasks\" shows it."_s);
    if (!IsIdentifier(invocation, id) || !CanBeSent(invocation, id))
        return CtlExit::Usage;
    return invocation.End(ServiceClient().DeleteSubTask(id, number, invocation.stop));
}

} // namespace

std::vector<Command> TaskCommands() {
    const Operand task{"TASK"_L1};
    return {
        {"task start"_L1,
         {task},
         {{"--wait"_L1, {}, "end when the run has ended, and as it did"_L1}},
         "Starts the task now."_L1,
         StartTask},
        {"task pause"_L1, {task}, {}, "Pauses the task."_L1, CommandTask<&ServiceClient::PauseTask>},
        {"task resume"_L1,
         {task},
         {},
         "Lets a paused task go on."_L1,
         CommandTask<&ServiceClient::ResumeTask>},
        {"task delete"_L1,
         {{"ID"_L1}},
         {},
         "Deletes the task of this identifier; a name is not taken."_L1,
         DeleteTask},
        {"task delete-subtask"_L1,
         {{"ID"_L1}, {"N"_L1}},
         {},
         "Deletes one sub-task by its number; a task's name is not taken."_L1,
         DeleteSubTask},
    };
}
