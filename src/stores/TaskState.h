#pragma once

/// The codes of the column `TaskState` in the table of tasks. The service writes 4 for a task that it holds
/// back for reasons of its own; it has no text.
enum class TaskState { Pending = 0, Running = 1, Paused = 2, Failed = 3, Held = 4, Completed = 5 };

/// The codes of the column `TaskState` in the table of a task's sub-tasks. A pending view asks for Pending, a
/// view of what is to be retried for PendingRetry and Failed.
enum class SubTaskState {
    Pending = 0, ///< waits for its turn
    Running =
        1, ///< is being processed; falls back to Pending when the task is paused or the service starts anew
    Done = 2,         ///< processed
    PendingRetry = 3, ///< went wrong, the service tries again by itself
    Failed = 4        ///< went wrong too often, waits for the next run or for its deletion
};
