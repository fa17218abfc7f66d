#pragma once

#include "stores/ReadResult.h"

#include <QString>

#include <stop_token>
#include <vector>

/// Which tasks a list shows.
enum class TaskFilter { MyTasks = 0, CompletedUserTasks = 1, SystemTasks = 2, All = 3 };

/// A task as a card shows it.
struct TaskRow {
    QString id;
    QString type;
    QString name;
    QString description;
    QString lastRun;
    QString nextRun;
    int state = 0;
};

struct TaskList {
    ReadResult read;
    std::vector<TaskRow> rows; ///< in the store's order
};

bool IsShown(TaskFilter filter, const QString& type, const QString& name, int state);

/// The tasks of a filter. On a lane.
TaskList ReadTaskList(TaskFilter filter, std::stop_token stop);
