#pragma once

#include "taskman/TaskSummary.h"

/// What the summary of a backup has of its own.
TaskSummaryPlan BackupSummary();

/// What a backup takes, leaves out and where it puts it, a row each: the first of a kind bears its title.
std::vector<SummaryRow> BackupDescriptionRows(const TaskRow& task);

/// The counts of a backup as its status row says them; behind a bar while it runs. None while they are not
/// known, or there is nothing to do.
std::optional<QString> BackupProgress(TaskState state, const SubTaskCounts& counts, const RunningWork& work);
