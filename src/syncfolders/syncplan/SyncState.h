#pragma once

#include "stores/TaskState.h"

#include <QTime>

#include <optional>

/// What a state of a sync folder's task offers, and the words on its button.
struct SyncAction {
    TaskAction action;
    QString caption;
};

/// None for a state that has no action of its own.
std::optional<SyncAction> SyncActionOf(TaskState state);

/// Seconds until the next run, "2025-3-4 9:05:00", by the time of day alone, on purpose: none when that has
/// passed today, whatever the date, and when the text is no time.
std::optional<int> SecondsUntil(const QString& nextRun, QTime now);

/// As in "01:00:00", "01 Minute(s) 05 Second(s)" and "09 Seconds".
QString RemainingText(int seconds);

/// What a card says of the state; none for one that leaves the text as it is.
std::optional<QString> SyncStatusText(TaskState state, const QString& nextRun, QTime now);
