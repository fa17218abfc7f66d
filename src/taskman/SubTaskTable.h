#pragma once

#include "list/ListTable.h"

struct TaskRow;

/// Which of a task's sub-tasks a table lists.
enum class SubtaskView { Pending, PendingRetry };

/// The sub-tasks of a task that wait for their turn or for another try. Each can be deleted.
ListTable SubTaskTable(const TaskRow& task, SubtaskView view);
