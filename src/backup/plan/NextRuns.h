#pragma once

#include "plan/BackupSchedule.h"

#include <QTimeZone>

/// A run that is to come.
struct PlannedRun {
    /// What the clocks do to its time on its day: they jump over it, or show it twice.
    enum class Clock { Plain, Skipped, Doubled };

    QDate date; ///< wall time
    QTime time;
    QDateTime at; ///< UTC; of a doubled time the first one, of a skipped one as if nothing were changed
    Clock clock = Clock::Plain;

    bool operator==(const PlannedRun&) const = default;
};

/// The next runs after `now` on a computer of that time zone, `most` of them at most. None of a backup that
/// runs when something changes, of one without a weekday or a known start, and past the last day that a
/// schedule can say.
std::vector<PlannedRun> NextRuns(const BackupSchedule& schedule, const QDateTime& now, const QTimeZone& zone,
                                 int most = 3);

/// As in "in 9 hours".
QString TimeUntil(const QDateTime& now, const QDateTime& then);

/// What is to be known of a run whose time is skipped or doubled; otherwise empty.
QString ClockRemark(PlannedRun::Clock clock);
