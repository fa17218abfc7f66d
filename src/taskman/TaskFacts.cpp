#include "taskman/TaskFacts.h"

#include "list/CellMarkup.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

quint32 ProcessedOf(const SubTaskCounts& counts) {
    return std::min(counts.processed.value_or(0), counts.total.value_or(0));
}

QString Text(const char* words) {
    return QCoreApplication::translate("TaskFacts", words);
}

RunningWork ReadWork(const QString& taskId, const LiveCounters& counters) {
    RunningWork work;
    counters.ZEPEnumTasksWithCallBackEx(taskId, [&work](const RunningSubTask& subTask) {
        work.Add(subTask);
        return true;
    });
    return work;
}

} // namespace

void RunningWork::Add(const RunningSubTask& subTask) {
    ++count;
    if (subTask.bytesTotal == 0 || subTask.description.contains(u"Chunk"))
        return;
    const auto done = static_cast<double>(std::min(subTask.bytesDone, subTask.bytesTotal));
    partial += static_cast<quint64>(done * Whole / static_cast<double>(subTask.bytesTotal));
}

TaskFacts ReadTaskFacts(const QString& taskId, TaskFacts before, CountsRead read,
                        const LiveCounters& counters, std::stop_token stop) {
    TaskFacts facts = std::move(before);
    facts.lookup = GetTaskInfo(taskId, std::move(stop));
    const auto changes = counters.ZEPTraceCounterGet(TraceCounter::TaskTable);
    const bool changed = changes != facts.changes;
    if (changed)
        facts.work = ReadWork(taskId, counters);
    if (changed || read == CountsRead::Always) {
        facts.counts = counters.ZEPTraceGetSTaskInfo(taskId);
        facts.changes = facts.counts.total ? changes : std::nullopt;
    }
    return facts;
}

std::optional<QString> CountText(const std::optional<quint32>& count) {
    return count ? std::optional(QString::number(*count)) : std::nullopt;
}

std::optional<QString> PendingText(const SubTaskCounts& counts) {
    if (!counts.total || !counts.processed)
        return {};
    return Text(QT_TRANSLATE_NOOP("TaskFacts", "%1 of %2 total sub-tasks"))
        .arg(*counts.total - ProcessedOf(counts))
        .arg(*counts.total);
}

std::optional<QString> CompletedText(const SubTaskCounts& counts) {
    if (!counts.processed)
        return {};
    return QString::number(*counts.processed - std::min(counts.pendingRetry.value_or(0), *counts.processed));
}

std::optional<QString> StateDetail(TaskState state) {
    const QString text = TaskStateText(state);
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

QString NextStart(const TaskInfo& info, const QString& none) {
    const bool waits = info.state != TaskState::Running && info.state != TaskState::Paused;
    return waits && !info.nextRun.isEmpty() ? info.nextRun : none;
}

std::optional<QString> IfFound(const TaskLookup& lookup, const std::optional<QString>& detail) {
    return lookup.found ? detail : std::nullopt;
}

QString ProgressText(const SubTaskCounts& counts) {
    const quint32 total = counts.total.value_or(0);
    const QString words =
        Text(QT_TRANSLATE_NOOP("TaskFacts", "%1 of %2 processed, %3 running, %4 pending retry"))
            .arg(ProcessedOf(counts))
            .arg(total)
            .arg(counts.running.value_or(0))
            .arg(counts.pendingRetry.value_or(0));
    return total == 0 ? words : Cell::Progress(ProcessedOf(counts), total, words);
}

std::optional<int> ProgressOf(const SubTaskCounts& counts) {
    if (!counts.total || !counts.processed)
        return {};
    return static_cast<int>(quint64(1000) * ProcessedOf(counts) / std::max(*counts.total, 1u));
}
