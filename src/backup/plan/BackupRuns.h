#pragma once

#include "plan/BackupTask.h"
#include "stores/ProcessLogStore.h"

#include <QDateTime>

/// What the log tells of a backup's runs that have ended. Times are wall time in the form of UTC, so that
/// they are compared as they were written; invalid where the log tells none.
struct BackupRuns {
    ProcessLogRecord last;
    QDateTime lastStart;
    QDateTime lastStop;
    QDateTime lastClean; ///< when the last run stopped that left nothing undone

    bool operator==(const BackupRuns&) const = default;
};

BackupRuns RunsOf(const std::vector<ProcessLogRecord>& log);

/// A time as the service writes it, as in "2025-03-04 09:05:00"; invalid when it is written otherwise.
QDateTime ServiceTime(const QString& text);
/// The computer's present time in that form.
QDateTime WallTime(const QDateTime& now);

/// As in "12 of 4,310 failed"; empty when the run left nothing undone, or was none.
QString OutcomeText(const ProcessLogRecord& run);

/// The longest time between two planned runs, in days: by the weekdays where they are told, otherwise one,
/// since such a backup runs daily or whenever something changes.
int IntervalDays(const ScheduleBlob& schedule);

/// How long the last clean run is ago, in whole days, when that is more than twice the interval.
std::optional<qint64> OverdueDays(const BackupRuns& runs, const ScheduleBlob& schedule,
                                  const QDateTime& wallNow);
/// As in "2 backups have had no clean run for 9 days", of which each has had none for so long; empty for
/// none.
QString OverdueText(const std::vector<qint64>& days);

/// As in "planned 01:00, ran 08:12" of a last run that began late by its next one's time of day; empty for
/// one in time, and where either is not told.
QString LateText(const BackupRuns& runs, const QString& nextRun);

/// A backup that waits for its next run and is told none.
bool LacksNextRun(TaskState state, const QString& nextRun);
