#pragma once

#include "cards/CardPanel.h"
#include "stores/SchedulerStore.h"

/// Which tasks a list shows.
enum class TaskFilter { MyTasks = 0, CompletedUserTasks = 1, SystemTasks = 2, All = 3 };

/// What a running task is doing.
struct TaskActivity {
    std::vector<RunningSubTask> running;
    SubTaskCounts counts;
    std::chrono::steady_clock::time_point at;
};

/// A task as a card shows it.
struct TaskRow : CardEntry {
    QString type = {};
    QString description = {};
    QString lastRun = {};
    QString nextRun = {};
    TaskState state = TaskState::Pending;
    ScheduleBlob schedule = {};
    TaskActivity activity = {}; ///< empty unless it runs
};

using TaskChoice = std::function<bool(const TaskRecord&)>;
TaskChoice ChosenBy(TaskFilter filter);

/// The chosen tasks in the store's order, and what the running ones do. On a lane.
CardEntries ReadTaskList(const TaskChoice& isListed, const LiveCounters& counters, std::stop_token stop);
