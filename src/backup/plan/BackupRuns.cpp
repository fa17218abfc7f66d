#include "plan/BackupRuns.h"

#include "zep/Text.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int DaysOfWeek = 7;
constexpr qint64 SecondsOfDay = 24 * 60 * 60;
constexpr qint64 LateAfter = 15 * 60; ///< seconds: one that waits for its turn is not late

QString Text(const char* words) {
    return QCoreApplication::translate("BackupRuns", words);
}

bool IsClean(const ProcessLogRecord& run) {
    return run.failedSubTasks == 0 && run.processedSubTasks >= run.totalSubTasks;
}

} // namespace

QDateTime ServiceTime(const QString& text) {
    QDateTime time = QDateTime::fromString(text, u"yyyy-M-d H:m:s"_s);
    time.setTimeSpec(Qt::UTC);
    return time;
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
            runs.lastStart = ServiceTime(run.startTime);
            runs.lastStop = stop;
        }
        if (IsClean(run) && (!runs.lastClean.isValid() || stop > runs.lastClean))
            runs.lastClean = stop;
    }
    return runs;
}

QString OutcomeText(const ProcessLogRecord& run) {
    const QString total = GroupedNumber(run.totalSubTasks);
    if (run.failedSubTasks > 0)
        return Text(QT_TRANSLATE_NOOP("BackupRuns", "%1 of %2 failed"))
            .arg(GroupedNumber(run.failedSubTasks), total);
    if (!IsClean(run))
        return Text(QT_TRANSLATE_NOOP("BackupRuns", "%1 of %2 not done"))
            .arg(GroupedNumber(run.totalSubTasks - run.processedSubTasks), total);
    return {};
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
    const QDateTime next = ServiceTime(nextRun);
    if (!next.isValid() || !runs.lastStart.isValid())
        return {};
    const qint64 late = (next.time().secsTo(runs.lastStart.time()) + SecondsOfDay) % SecondsOfDay;
    if (late < LateAfter)
        return {};
    const auto clock = [](const QDateTime& time) { return time.time().toString(u"HH:mm"_s); };
    return Text(QT_TRANSLATE_NOOP("BackupRuns", "planned %1, ran %2"))
        .arg(clock(next), clock(runs.lastStart));
}

bool LacksNextRun(TaskState state, const QString& nextRun) {
    return nextRun.isEmpty() && (state == TaskState::Pending || state == TaskState::Failed);
}
