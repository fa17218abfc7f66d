#pragma once

#include <QByteArrayView>
#include <QString>

#include <array>
#include <optional>

/// What the console reads of a task's schedule: its type and the weekdays it runs on.
struct ScheduleBlob {
    static constexpr qsizetype Size = 308;
    static constexpr quint32 BackupType = 4;

    quint32 type = 0;
    std::array<bool, 7> weekdays{}; ///< from Sunday; they count only when weekdaysInUse
    bool weekdaysInUse = false;

    /// None when the blob is not exactly Size octets long.
    static std::optional<ScheduleBlob> Parse(QByteArrayView blob);
};

/// The weekdays of a schedule as seven characters from Sunday, a letter or "_" each.
struct WeekdaySummary {
    QString letters; ///< empty when the schedule names no weekdays
    bool scheduled = false;

    static WeekdaySummary Of(const ScheduleBlob& schedule);
};
