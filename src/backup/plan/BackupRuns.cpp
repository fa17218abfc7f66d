#include "plan/BackupRuns.h"

#include "zep/Text.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int DaysOfWeek = 7;
constexpr qsizetype YearDigits = 4;
constexpr qint64 SecondsOfHour = 60 * 60;
constexpr qint64 SecondsOfDay = 24 * SecondsOfHour;
constexpr qint64 LateAfter = 15 * 60; ///< seconds: one that waits for its turn is not late

QString Text(const char* words) {
    return QCoreApplication::translate("BackupRuns", words);
}

bool IsClean(const ProcessLogRecord& run) {
    return run.failedSubTasks == 0 && run.processedSubTasks >= run.totalSubTasks;
}

QString Ago(qint64 count, const char* one, const char* several) {
    return count == 1 ? Text(one) : Text(several).arg(count);
}

/// How much later in the day the one time is, in seconds.
qint64 LaterBy(const QDateTime& time, const QDateTime& planned) {
    return (planned.time().secsTo(time.time()) + SecondsOfDay) % SecondsOfDay;
}

/// Whether the runs before the last one say that such a backup is planned for that time of the day.
bool IsPlanned(const std::vector<QDateTime>& starts, const QDateTime& next) {
    for (std::size_t run = 1; run < starts.size(); ++run)
        if (starts[run].date() == starts[run - 1].date())
            return false;
    return starts.size() > 1 &&
           std::any_of(starts.begin() + 1, starts.end(),
                       [&next](const QDateTime& start) { return LaterBy(start, next) < LateAfter; });
}

std::vector<QDateTime> LastStarts(const std::vector<ProcessLogRecord>& log) {
    std::vector<QDateTime> starts;
    starts.reserve(log.size());
    for (const ProcessLogRecord& run : log)
        if (const QDateTime start = ServiceTime(run.startTime); start.isValid())
            starts.push_back(start);
    std::sort(starts.begin(), starts.end(), std::greater<>());
    starts.resize(std::min<std::size_t>(starts.size(), DaysOfWeek));
    return starts;
}

} // namespace

/// By hand, since a page of cards reads many at each refresh.
QDateTime ServiceTime(const QString& text) {
    constexpr std::u16string_view Separators = u"-- ::";
    std::array<int, 6> numbers{};
    qsizetype at = 0;
    for (std::size_t part = 0; part < numbers.size(); ++part) {
        const qsizetype begin = at;
        for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9' && at - begin < YearDigits; ++at)
            numbers[part] = 10 * numbers[part] + text[at].digitValue();
        const bool whole = part == 0 ? at - begin == YearDigits : at > begin;
        if (!whole || (part < Separators.size() && (at == text.size() || text[at++] != Separators[part])))
            return {};
    }
    const QDate date(numbers[0], numbers[1], numbers[2]);
    const QTime time(numbers[3], numbers[4], numbers[5]);
    return at == text.size() && date.isValid() && time.isValid() ? QDateTime(date, time, Qt::UTC)
                                                                 : QDateTime();
}

QDateTime WallTime(const QDateTime& now) {
    return {now.date(), now.time(), Qt::UTC};
}

BackupRuns RunsOf(const std::vector<ProcessLogRecord>& log) {
    BackupRuns runs;
    for (const ProcessLogRecord& run : log) {
        const QDateTime stop = ServiceTime(run.stopTime);
        if (!stop.isValid())
            continue;
        if (!runs.lastStop.isValid() || stop >= runs.lastStop) {
            runs.last = run;
            runs.lastStop = stop;
        }
        if (IsClean(run) && (!runs.lastClean.isValid() || stop > runs.lastClean))
            runs.lastClean = stop;
    }
    runs.starts = LastStarts(log);
    return runs;
}

QString OutcomeText(const ProcessLogRecord& run) {
    if (IsClean(run))
        return {};
    const QString total = GroupedNumber(run.totalSubTasks);
    if (run.failedSubTasks > 0)
        return Text(QT_TRANSLATE_NOOP("BackupRuns", "%1 of %2 failed"))
            .arg(GroupedNumber(run.failedSubTasks), total);
    return Text(QT_TRANSLATE_NOOP("BackupRuns", "%1 of %2 not done"))
        .arg(GroupedNumber(run.totalSubTasks - run.processedSubTasks), total);
}

int IntervalDays(const ScheduleBlob& schedule) {
    if (!schedule.weekdaysInUse)
        return 1;
    int longest = 0;
    int gap = 0;
    for (int day = 0; day < 2 * DaysOfWeek; ++day) { // twice, for the gap over the end of the week
        ++gap;
        longest = std::max(longest, std::min(gap, DaysOfWeek));
        if (schedule.weekdays[static_cast<std::size_t>(day % DaysOfWeek)])
            gap = 0;
    }
    return longest;
}

QString CleanAgeText(const BackupRuns& runs, const QDateTime& wallNow) {
    if (!runs.lastClean.isValid())
        return {};
    const qint64 age = std::max<qint64>(runs.lastClean.secsTo(wallNow), 0);
    if (age < SecondsOfHour)
        return Text(QT_TRANSLATE_NOOP("BackupRuns", "last clean run within the last hour"));
    if (age < SecondsOfDay)
        return Ago(age / SecondsOfHour, QT_TRANSLATE_NOOP("BackupRuns", "last clean run 1 hour ago"),
                   QT_TRANSLATE_NOOP("BackupRuns", "last clean run %1 hours ago"));
    return Ago(age / SecondsOfDay, QT_TRANSLATE_NOOP("BackupRuns", "last clean run 1 day ago"),
               QT_TRANSLATE_NOOP("BackupRuns", "last clean run %1 days ago"));
}

std::optional<qint64> OverdueDays(const BackupRuns& runs, const ScheduleBlob& schedule,
                                  const QDateTime& wallNow) {
    if (!runs.lastClean.isValid())
        return {};
    const qint64 age = runs.lastClean.secsTo(wallNow);
    return age > 2 * IntervalDays(schedule) * SecondsOfDay ? std::optional(age / SecondsOfDay) : std::nullopt;
}

QString OverdueText(const std::vector<qint64>& days) {
    if (days.empty())
        return {};
    const QString least = QString::number(*std::min_element(days.begin(), days.end()));
    if (days.size() == 1)
        return Text(QT_TRANSLATE_NOOP("BackupRuns", "1 backup has had no clean run for %1 days")).arg(least);
    return Text(QT_TRANSLATE_NOOP("BackupRuns", "%1 backups have had no clean run for %2 days"))
        .arg(QString::number(days.size()), least);
}

QString LateText(const BackupRuns& runs, const QString& nextRun) {
    if (runs.starts.size() < 2)
        return {};
    const QDateTime next = ServiceTime(nextRun);
    if (!next.isValid() || !IsPlanned(runs.starts, next))
        return {};
    const QDateTime& start = runs.starts.front();
    if (LaterBy(start, next) < LateAfter)
        return {};
    const auto clock = [](const QDateTime& time) { return time.time().toString(u"HH:mm"_s); };
    return Text(QT_TRANSLATE_NOOP("BackupRuns", "planned %1, ran %2")).arg(clock(next), clock(start));
}

QString PausedText(TaskState state, const BackupRuns& runs) {
    const bool halted = state == TaskState::Paused && runs.last.processedSubTasks < runs.last.totalSubTasks;
    return halted ? Text(QT_TRANSLATE_NOOP("BackupRuns", "paused since %1"))
                        .arg(runs.lastStop.toString(u"yyyy-MM-dd HH:mm"_s))
                  : QString();
}

bool LacksNextRun(TaskState state, const ScheduleBlob& schedule, const QString& nextRun) {
    const bool waits = state == TaskState::Pending || state == TaskState::Failed;
    return waits && nextRun.isEmpty() && WeekdaySummary::Of(schedule).scheduled;
}
