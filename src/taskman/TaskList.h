#pragma once

#include "stores/ReadResult.h"
#include "stores/TaskState.h"
#include "zep/LiveCounters.h"

#include <QSet>
#include <QString>

#include <chrono>
#include <stop_token>
#include <vector>

/// Which tasks a list shows.
enum class TaskFilter { MyTasks = 0, CompletedUserTasks = 1, SystemTasks = 2, All = 3 };

/// What a running task is doing.
struct TaskActivity {
    std::vector<RunningSubTask> running;
    SubTaskCounts counts;
    std::chrono::steady_clock::time_point at;
};

/// A task as a card shows it.
struct TaskRow {
    QString id;
    QString type;
    QString name;
    QString description;
    QString lastRun;
    QString nextRun;
    TaskState state = TaskState::Pending;
    QString title = {};         ///< the name without its case: cards are found by it
    TaskActivity activity = {}; ///< empty unless it runs
};

struct TaskList {
    ReadResult read;
    std::vector<TaskRow> rows; ///< in the store's order
    QSet<QString> ids;
};

bool IsShown(TaskFilter filter, const QString& type, const QString& name, TaskState state);

/// The tasks of a filter, and what the running ones do. On a lane.
TaskList ReadTaskList(TaskFilter filter, const LiveCounters& counters, std::stop_token stop);
