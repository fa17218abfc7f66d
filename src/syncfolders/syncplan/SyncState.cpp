#include "syncplan/SyncState.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// `ahead` is the text with the time that remains, where the state counts down.
struct SyncState {
    TaskState state;
    TaskAction action;
    const char* ahead;
    const char* text;
    const char* caption;
};

constexpr const char* Pause = QT_TRANSLATE_NOOP("SyncState", "Pause Sync");

constexpr SyncState States[] = {
    {TaskState::Pending, TaskAction::Pause, QT_TRANSLATE_NOOP("SyncState", "Sync starts in %1"),
     QT_TRANSLATE_NOOP("SyncState", "Sync starts momentarily"), Pause},
    {TaskState::Running, TaskAction::Pause, nullptr, nullptr, Pause},
    {TaskState::Paused, TaskAction::Resume, nullptr, QT_TRANSLATE_NOOP("SyncState", "Paused"),
     QT_TRANSLATE_NOOP("SyncState", "Resume Sync")},
    {TaskState::Failed, TaskAction::StartNow, QT_TRANSLATE_NOOP("SyncState", "failed, retry in %1"),
     QT_TRANSLATE_NOOP("SyncState", "failed, retry momentarily"),
     QT_TRANSLATE_NOOP("SyncState", "Retry Now")},
    {TaskState::Completed, TaskAction::StartNow, nullptr, QT_TRANSLATE_NOOP("SyncState", "Completed"),
     QT_TRANSLATE_NOOP("SyncState", "Start Now")},
};

const SyncState* Find(TaskState state) {
    const auto* found = std::find_if(std::begin(States), std::end(States),
                                     [state](const SyncState& each) { return each.state == state; });
    return found == std::end(States) ? nullptr : found;
}

QString Text(const char* words) {
    return QCoreApplication::translate("SyncState", words);
}

QString TwoDigits(int number) {
    return QString::number(number).rightJustified(2, u'0');
}

constexpr int Minute = 60;
constexpr int Hour = 60 * Minute;

/// The seconds of the day in "year-month-day hour:minute:second".
std::optional<int> SecondsOfDay(const QString& text) {
    const QStringList parts = QString(text).replace(u'-', u' ').replace(u':', u' ').simplified().split(u' ');
    constexpr qsizetype TimeParts = 6;
    bool areNumbers = parts.size() == TimeParts;
    int numbers[TimeParts] = {};
    for (qsizetype i = 0; areNumbers && i < TimeParts; ++i)
        numbers[i] = parts[i].toInt(&areNumbers);
    if (!areNumbers || !QTime::isValid(numbers[3], numbers[4], numbers[5]))
        return {};
    return numbers[3] * Hour + numbers[4] * Minute + numbers[5];
}

} // namespace

std::optional<SyncAction> SyncActionOf(TaskState state) {
    const SyncState* found = Find(state);
    return found ? std::optional(SyncAction{found->action, Text(found->caption)}) : std::nullopt;
}

std::optional<int> SecondsUntil(const QString& nextRun, QTime now) {
    const std::optional<int> then = SecondsOfDay(nextRun);
    const int passed = now.msecsSinceStartOfDay() / 1000;
    return then && *then > passed ? std::optional(*then - passed) : std::nullopt;
}

QString RemainingText(int seconds) {
    const int minutes = seconds / Minute % Minute;
    if (seconds >= Hour)
        return TwoDigits(seconds / Hour) + u':' + TwoDigits(minutes) + u':' + TwoDigits(seconds % Minute);
    if (minutes != 0)
        return Text(QT_TRANSLATE_NOOP("SyncState", "%1 Minute(s) %2 Second(s)"))
            .arg(TwoDigits(minutes), TwoDigits(seconds % Minute));
    return Text(QT_TRANSLATE_NOOP("SyncState", "%1 Seconds")).arg(TwoDigits(seconds));
}

std::optional<QString> SyncStatusText(TaskState state, const QString& nextRun, QTime now) {
    const SyncState* found = Find(state);
    if (!found || !found->text)
        return {};
    const std::optional<int> remaining = found->ahead ? SecondsUntil(nextRun, now) : std::nullopt;
    return remaining ? Text(found->ahead).arg(RemainingText(*remaining)) : Text(found->text);
}
