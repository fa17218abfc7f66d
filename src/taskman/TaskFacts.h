#pragma once

#include "stores/SchedulerStore.h"
#include "zep/LiveCounters.h"

/// What a task's sub-tasks are at now.
struct RunningWork {
    static constexpr quint64 Whole = 10000; ///< of one sub-task

    quint32 count = 0;
    quint64 partial = 0; ///< how far they are, added up

    /// Parts of files, and what has no size, are counted and add nothing.
    void Add(const RunningSubTask& subTask);

    bool operator==(const RunningWork&) const = default;
};

/// What is known of one task: its row and the counts of its sub-tasks.
struct TaskFacts {
    TaskLookup lookup;
    std::optional<quint32> changes; ///< of the task table, when the counts were read
    SubTaskCounts counts;
    RunningWork work; ///< as of the same change
};

enum class CountsRead { WhenChanged, Always };

/// The task's row, and what runs when the service's change counter has moved since `before`. On a lane.
TaskFacts ReadTaskFacts(const QString& taskId, TaskFacts before, CountsRead read,
                        const LiveCounters& counters, std::stop_token stop);

/// The counts as people read them; none where one is not known.
std::optional<QString> CountText(const std::optional<quint32>& count);
std::optional<QString> PendingText(const SubTaskCounts& counts);   ///< "%d of %d total sub-tasks"
std::optional<QString> CompletedText(const SubTaskCounts& counts); ///< without those that went wrong

/// The state's words, or none of one that has none: a row then stays as it is.
std::optional<QString> StateDetail(TaskState state);
/// When the task runs next; `none` where that is not planned, and while it runs or is paused.
QString NextStart(const TaskInfo& info, const QString& none);
/// What a row shows that the task's row tells; one whose task was not found stays as it is.
std::optional<QString> IfFound(const TaskLookup& lookup, const std::optional<QString>& detail);

/// "%d of %d processed, ..." behind a bar; without the bar when there is nothing to process.
QString ProgressText(const SubTaskCounts& counts);
/// In thousandths; none when it is not known.
std::optional<int> ProgressOf(const SubTaskCounts& counts);
