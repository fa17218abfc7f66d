#pragma once

#include "taskman/TaskSummary.h"

/// What the task manager says of a task: its kind and state, the counts of its sub-tasks, its times.
TaskSummaryPlan TaskManSummary();
