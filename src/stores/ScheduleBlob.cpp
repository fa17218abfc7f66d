#include "stores/ScheduleBlob.h"

#include <QtEndian>

namespace {
constexpr qsizetype WeekdaysAt = 36;
constexpr qsizetype WeekdaysInUseAt = 43;
constexpr std::u16string_view WeekdayLetters = u"SMTWTFS";
} // namespace

std::optional<ScheduleBlob> ScheduleBlob::Parse(QByteArrayView blob) {
    if (blob.size() != Size)
        return {};
    ScheduleBlob schedule;
    schedule.type = qFromLittleEndian<quint32>(blob.data());
    for (size_t day = 0; day < schedule.weekdays.size(); ++day)
        schedule.weekdays[day] = blob[WeekdaysAt + static_cast<qsizetype>(day)] != 0;
    schedule.weekdaysInUse = blob[WeekdaysInUseAt] != 0;
    return schedule;
}

WeekdaySummary WeekdaySummary::Of(const ScheduleBlob& schedule) {
    WeekdaySummary summary;
    summary.scheduled = schedule.weekdaysInUse || schedule.type == ScheduleBlob::BackupType;
    if (!schedule.weekdaysInUse)
        return summary;
    for (size_t day = 0; day < schedule.weekdays.size(); ++day)
        summary.letters += schedule.weekdays[day] ? QChar(WeekdayLetters[day]) : QLatin1Char('_');
    return summary;
}
