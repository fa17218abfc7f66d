#pragma once

#include "ctl/Command.h"

#include "plan/TaskCreation.h"

// What the commands that make tasks share.

/// Takes --date, --time, --box and the option that names weekdays out of the command line. Returns what is
/// wrong with them, if anything.
QString TakeStart(const Invocation& invocation, QLatin1String daysOption, BackupSchedule& schedule);

/// The options of schedule, retention, encryption and of sending; those of the command stand before them.
std::vector<CommandOption> WithTaskOptions(std::vector<CommandOption> options);
/// Those of which one at most is given.
Alternatives ModeAlternatives();

/// What they say of a task.
struct TaskTerms {
    BackupSchedule schedule;
    BackupRetention retention;
    bool encrypted = false;
};
/// Puts them into the terms, for a task of that form that is made now. Returns what is wrong, if anything.
QString TakeTerms(const Invocation& invocation, ScheduleForm form, TaskTerms& terms);

/// Sends the record, or writes it with --dry-run. An encrypted task needs a password that is stored.
CtlExit MakeTask(const Invocation& invocation, const NewTask& task, bool encrypted);
