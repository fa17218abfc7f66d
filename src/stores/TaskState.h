#pragma once

#include <QString>

#include <span>

/// The codes of the column `TaskState` in the table of tasks. The service writes 4 for a task that it holds
/// back for reasons of its own; it has no text. Codes that it may come to write stay as they are.
enum class TaskState : int { Pending = 0, Running = 1, Paused = 2, Failed = 3, Held = 4, Completed = 5 };

/// What a user can have done to a task.
enum class TaskAction { StartNow, Pause, Resume, Cancel };

/// What a state means to people: to cards, summaries and the command line alike.
struct TaskStateMeaning {
    TaskState state;
    const char* text; ///< English; null: none
    const char* icon; ///< name of its drawing
    std::span<const TaskAction> actions;
};

/// Of a state without a text, or an unknown one: no text, no actions, and the icon of one that waits.
const TaskStateMeaning& MeaningOf(TaskState state);

/// In the user's language; empty for a state without a text.
QString TaskStateText(TaskState state);

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
