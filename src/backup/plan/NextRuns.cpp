#include "plan/NextRuns.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

constexpr qint64 Minute = 60;
constexpr qint64 Hour = 60 * Minute;
constexpr qint64 Day = 24 * Hour;

/// Asked of the zone by instants alone: what a date and time without one become on such a day depends on the
/// version of the toolkit.
PlannedRun RunAt(const QDate& date, const QTime& time, const QTimeZone& zone) {
    const QDateTime wall(date, time, Qt::UTC);
    const int before = zone.offsetFromUtc(wall.addSecs(-Day));
    const int after = zone.offsetFromUtc(wall.addSecs(Day));
    const QDateTime early = wall.addSecs(-before);
    const QDateTime late = wall.addSecs(-after);
    const bool isEarly = zone.offsetFromUtc(early) == before;
    const bool isLate = zone.offsetFromUtc(late) == after;
    if (before == after || isEarly != isLate)
        return {date, time, isEarly ? early : late, PlannedRun::Clock::Plain};
    return {date, time, early, isEarly ? PlannedRun::Clock::Doubled : PlannedRun::Clock::Skipped};
}

bool RunsOn(const BackupSchedule& schedule, const QDate& date) {
    return schedule.mode == ScheduleMode::Daily ||
           schedule.weekdays[static_cast<std::size_t>(date.dayOfWeek() % 7)];
}

QString Counted(qint64 count, const char* one, const char* many) {
    return QCoreApplication::translate("NextRuns", count == 1 ? one : many).arg(count);
}

} // namespace

std::vector<PlannedRun> NextRuns(const BackupSchedule& schedule, const QDateTime& now, const QTimeZone& zone,
                                 int most) {
    std::vector<PlannedRun> runs;
    if (schedule.mode == ScheduleMode::Continuous || !schedule.date.isValid() || !schedule.time.isValid())
        return runs;
    const QDate today = now.toUTC().addSecs(zone.offsetFromUtc(now)).date();
    QDate date = std::max(schedule.date, today);
    // The first week holds a run unless no week does.
    for (int idle = 0; idle <= 7 && date <= LastScheduleDate && runs.size() < std::size_t(most);
         date = date.addDays(1), ++idle) {
        if (!RunsOn(schedule, date))
            continue;
        const PlannedRun run = RunAt(date, schedule.time, zone);
        if (run.at <= now)
            continue;
        runs.push_back(run);
        idle = 0;
    }
    return runs;
}

QString TimeUntil(const QDateTime& now, const QDateTime& then) {
    const auto rounded = [seconds = now.secsTo(then)](qint64 unit) { return (seconds + unit / 2) / unit; };
    if (now.secsTo(then) < Minute)
        return QCoreApplication::translate("NextRuns", "in less than a minute");
    if (rounded(Minute) < 60)
        return Counted(rounded(Minute), QT_TRANSLATE_NOOP("NextRuns", "in %1 minute"),
                       QT_TRANSLATE_NOOP("NextRuns", "in %1 minutes"));
    if (rounded(Hour) < 48)
        return Counted(rounded(Hour), QT_TRANSLATE_NOOP("NextRuns", "in %1 hour"),
                       QT_TRANSLATE_NOOP("NextRuns", "in %1 hours"));
    return Counted(rounded(Day), QT_TRANSLATE_NOOP("NextRuns", "in %1 day"),
                   QT_TRANSLATE_NOOP("NextRuns", "in %1 days"));
}

QString ClockRemark(PlannedRun::Clock clock) {
    switch (clock) {
    case PlannedRun::Clock::Plain:
        break;
    case PlannedRun::Clock::Skipped:
        return QCoreApplication::translate(
            "NextRuns", "The clocks go forward over this time: the run may come later, or not at all.");
    case PlannedRun::Clock::Doubled:
        return QCoreApplication::translate(
            "NextRuns", "The clocks go back and show this time twice: the run may come at either, or twice.");
    }
    return {};
}
