#pragma once

#include "stores/Database.h"
#include "stores/ScheduleBlob.h"
#include "stores/Statement.h"
#include "stores/TaskState.h"

#include <functional>

/// A row of the service's task list. A null column is a null string.
struct TaskRecord {
    QString taskId;
    QString kind; ///< "backup", "ccbackup", ...
    QString name;
    TaskState state = TaskState::Pending;
    ScheduleBlob schedule;
    QString lastRun;
    QString description;
    QString nextRun;
};

/// What the list keeps of one task.
struct TaskInfo {
    TaskState state = TaskState::Pending;
    QString lastRun; ///< "N/A" when the service noted none
    QString nextRun;
    WeekdaySummary weekdays;
    int number = 0; ///< column 10 of the row
};

struct TaskLookup {
    ReadResult read;
    bool found = false;
    TaskInfo task; ///< all zero unless found

    explicit operator bool() const { return found; }
};

/// Called for each row, on the reading thread; false ends the walk. It copies what it needs and returns at
/// once: a walk holds a lock that the service waits for.
using TaskCallback = std::function<bool(const TaskRecord&)>;

/// The service's task list. One object a read, one thread at a time.
class SchedulerStore {
public:
    explicit SchedulerStore(std::stop_token stop = {}, const OpenRule& rule = {});

    /// Walks the tasks, latest start first, but for those whose schedule is not one.
    ReadResult EnumTasks(const TaskCallback& callback);

    TaskLookup LookupTask(const QString& taskId);

private:
    Database m_database;
    Statement m_list;
    Statement m_lookup;
};

/// Open a store for one call.
ReadResult EnumAllTasks(const TaskCallback& callback, std::stop_token stop = {}, const OpenRule& rule = {});
TaskLookup GetTaskInfo(const QString& taskId, std::stop_token stop = {}, const OpenRule& rule = {});

/// Whether the task list can be opened now.
ReadResult ProbeSchedulerDatabase(std::stop_token stop = {}, const OpenRule& rule = {});
