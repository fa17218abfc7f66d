#pragma once

#include "devservice/Schedule.h"
#include "stores/TaskState.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace devservice {

/// One piece of a task's work. `type` is a code as "PUT", "GET", "DIR"; the parameters depend on it: for a
/// transfer the file and where it goes to.
struct SubTask {
    int number = 0; ///< unique in its task and the order of work
    std::string type;
    std::string parameter1;
    std::string parameter2;
    std::string note;
    int64_t size = 0; ///< octets
    int retries = 0;
    SubTaskState state = SubTaskState::Pending;
    int64_t done = 0;  ///< octets moved so far; lives in the counters only
    SimTime retryAt{}; ///< of one to be retried
};

/// A task as the service knows it; a row of the table `Scheduler` beside its own table of sub-tasks.
struct Task {
    std::string id; ///< a GUID in braces
    std::string owner = "SYSTEM";
    std::string type; ///< "backup", "ccbackup", "snapshotbackup", "advbackup", "RestoreApp", ...
    std::string name;
    std::string description; ///< sources, targets, exclusions: lists of lines, joined by tabs
    Schedule schedule;
    TaskState state = TaskState::Pending;
    std::optional<SimTime> lastRun;
    std::optional<SimTime> nextRun;
    SimTime created{};
    int runCount = 0;
    std::vector<SubTask> subTasks; ///< by rising number

    const SubTask* Find(int subTaskNumber) const; ///< none when there is no such sub-task
    SubTask* Find(int subTaskNumber);
};

/// A task with a name and sensible fields, for tests: "backup" by default, pending, a daily schedule.
Task MakeTask(const std::string& id, const std::string& name, const std::string& type = "backup",
              TaskState state = TaskState::Pending);
SubTask MakeSubTask(int number, const std::string& type, const std::string& parameter1, int64_t size = 0,
                    SubTaskState state = SubTaskState::Pending);

/// A row of the audit trace: level 0 (information), 1 (warning) or 2 (error).
struct AuditRow {
    int level = 0;
    std::string trace;
    SimTime time{};
};

/// The text of an audit row that belongs to a task: its key stands before the message as "$$KEY$ ".
std::string TaskTrace(const std::string& taskId, const std::string& message);

} // namespace devservice
