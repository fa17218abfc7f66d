#include "ctl/Rows.h"

#include "stores/AuditTraceStore.h"
#include "stores/ProcessLogStore.h"
#include "stores/SchedulerStore.h"
#include "stores/SubTaskStore.h"
#include "stores/TaskState.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QJsonValue StateText(TaskState state) {
    const QString text = TaskStateText(state);
    return text.isEmpty() ? QJsonValue() : text;
}

QJsonObject TaskObject(const TaskRecord& task) {
    return {{u"id"_s, JsonText(task.taskId)},
            {u"type"_s, JsonText(task.kind)},
            {u"name"_s, JsonText(task.name)},
            {u"description"_s, JsonText(task.description)},
            {u"nextRun"_s, JsonText(task.nextRun)},
            {u"scheduleType"_s, qint64{task.schedule.type}},
            {u"state"_s, static_cast<int>(task.state)},
            {u"stateText"_s, StateText(task.state)},
            {u"lastRun"_s, JsonText(task.lastRun)}};
}

QJsonObject SubTaskObject(const SubTaskRecord& subTask) {
    return {{u"subtask"_s, subTask.subTaskNumber}, {u"text1"_s, JsonText(subTask.text1)},
            {u"text2"_s, JsonText(subTask.text2)}, {u"text3"_s, JsonText(subTask.text3)},
            {u"text4"_s, JsonText(subTask.text4)}, {u"number5"_s, subTask.number5},
            {u"number6"_s, subTask.number6}};
}

CtlExit Tasks(const Invocation& invocation) {
    QJsonArray rows;
    const ReadResult read = EnumAllTasks(
        [&rows](const TaskRecord& task) {
            rows += TaskObject(task);
            return true;
        },
        invocation.stop);
    return WriteRows(invocation, read, rows,
                     {{"ID"_L1, "id"_L1},
                      {"TYPE"_L1, "type"_L1},
                      {"NAME"_L1, "name"_L1},
                      {"STATE"_L1, "stateText"_L1},
                      {"LAST RUN"_L1, "lastRun"_L1},
                      {"NEXT RUN"_L1, "nextRun"_L1}});
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
    QJsonArray rows;
    const SubTaskCallback add = [&rows](const SubTaskRecord& subTask) {
        rows += SubTaskObject(subTask);
        return true;
    };
    const QString& task = invocation.operands[0];
    ReadResult read;
    if (const auto text = invocation.Option("--states"_L1)) {
        const auto states = ParseStates(*text);
        if (!states)
            return invocation.End(CtlExit::Usage, u"--states takes one or two numbers, as in 0 or 3,4."_s);
        read = EnumSubTasks(task, states->first, states->second, add, invocation.stop);
    } else {
        read = EnumSubTasks(task, add, invocation.stop);
    }
    return WriteRows(invocation, read, rows,
                     {{"SUBTASK"_L1, "subtask"_L1},
                      {"TEXT1"_L1, "text1"_L1},
                      {"TEXT2"_L1, "text2"_L1},
                      {"TEXT3"_L1, "text3"_L1},
                      {"TEXT4"_L1, "text4"_L1},
                      {"NUMBER5"_L1, "number5"_L1},
                      {"NUMBER6"_L1, "number6"_L1}});
}

QJsonObject RunObject(const ProcessLogRecord& run) {
    return {{u"startTime"_s, JsonText(run.startTime)},   {u"stopTime"_s, JsonText(run.stopTime)},
            {u"stopReason"_s, JsonText(run.stopReason)}, {u"totalSubtasks"_s, run.totalSubTasks},
            {u"failedSubtasks"_s, run.failedSubTasks},   {u"processedSubtasks"_s, run.processedSubTasks}};
}

CtlExit History(const Invocation& invocation) {
    std::vector<ProcessLogRecord> log;
    const ReadResult read = FillProcessLog(invocation.operands[0], log, invocation.stop);
    QJsonArray rows;
    for (const ProcessLogRecord& run : log)
        rows += RunObject(run);
    return WriteRows(invocation, read, rows,
                     {{"START"_L1, "startTime"_L1},
                      {"STOP"_L1, "stopTime"_L1},
                      {"REASON"_L1, "stopReason"_L1},
                      {"TOTAL"_L1, "totalSubtasks"_L1},
                      {"FAILED"_L1, "failedSubtasks"_L1},
                      {"PROCESSED"_L1, "processedSubtasks"_L1}});
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
    filter.between = std::pair(first, last);
    return {};
}

CtlExit Audit(const Invocation& invocation) {
    AuditFilter filter;
    const QString mistake = ReadFilter(invocation, filter);
    if (!mistake.isEmpty())
        return invocation.End(CtlExit::Usage, mistake);
    QJsonArray rows;
    const ReadResult read =
        AuditTraceStore(invocation.stop).EnumTraces(filter, [&rows](const AuditRecord& record) {
            rows += QJsonObject{{u"level"_s, record.level},
                                {u"time"_s, JsonText(record.time)},
                                {u"trace"_s, JsonText(AuditMessage(record.trace))}};
            return true;
        });
    return WriteRows(invocation, read, rows,
                     {{"LEVEL"_L1, "level"_L1}, {"TIME"_L1, "time"_L1}, {"TRACE"_L1, "trace"_L1}});
}

} // namespace

std::vector<Command> DatabaseCommands() {
    const CommandOption json{"--json"_L1, {}};
    return {
        {"tasks"_L1, {}, {json}, "The tasks of the service, latest start first."_L1, Tasks},
        {"subtasks"_L1,
         {"TASK"_L1},
         {{"--states"_L1, "A[,B]"_L1}, json},
         "The sub-tasks of a task in their order, all or those in one of two states:\n"
         "0 pending, 1 running, 2 done, 3 to be tried again, 4 failed."_L1,
         SubTasks},
        {"history"_L1, {"TASK"_L1}, {json}, "The runs of a task that have ended."_L1, History},
        {"audit"_L1,
         {},
         {{"--contains"_L1, "TEXT"_L1},
          {"--from"_L1, "DATE"_L1},
          {"--to"_L1, "DATE"_L1},
          {"--max"_L1, "N"_L1},
          json},
         "The audit trace, newest first; level 0 informs, 1 warns, 2 is an error. DATE is\n"
         "as 2026-03-01: from the start of the first day to the start of the last, or\n"
         "to now when both are the same. At most N traces (200), or all when N is 0."_L1,
         Audit},
    };
}
