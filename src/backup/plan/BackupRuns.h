#pragma once

#include "plan/BackupTask.h"
#include "stores/ProcessLogStore.h"

#include <QDateTime>

/// What the log tells of a backup's runs that have ended. Times are wall time in the form of UTC, so that
/// they are compared as they were written; invalid where the log tells none.
struct BackupRuns {
    ProcessLogRecord last;
    QDateTime lastStop;
    QDateTime lastClean;           ///< when the last run stopped that left nothing undone
    std::vector<QDateTime> starts; ///< of the last runs, the latest first; a week of daily ones at most

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

/// As in "last clean run 3 hours ago"; empty where the log tells none.
QString CleanAgeText(const BackupRuns& runs, const QDateTime& wallNow);

/// How long the last clean run is ago, in whole days, when that is more than twice the interval.
std::optional<qint64> OverdueDays(const BackupRuns& runs, const ScheduleBlob& schedule,
                                  const QDateTime& wallNow);
/// As in "2 backups have had no clean run for 9 days", of which each has had none for so long; empty for
/// none.
QString OverdueText(const std::vector<qint64>& days);

/// As in "planned 01:00, ran 08:12" of a last run that began late by its next one's time of day. Empty for
/// one in time, and unless the runs before say that this is the plan: one of them was in time, and no two of
/// all began on one day.
QString LateText(const BackupRuns& runs, const QString& nextRun);

/// As in "paused since 2025-03-04 09:05" of a backup that is paused in the middle of its last run.
QString PausedText(TaskState state, const BackupRuns& runs);

/// A backup that recurs, waits for its next run and is told none.
bool LacksNextRun(TaskState state, const ScheduleBlob& schedule, const QString& nextRun);
