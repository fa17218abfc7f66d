#include "devservice/Schedule.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <sstream>

namespace devservice {

using namespace std::chrono;

namespace {

constexpr size_t KindAt = 0;
constexpr size_t ModeAt = 4;
constexpr size_t StartAt = 8;
constexpr size_t WeekdaysAt = 36;
constexpr size_t WeekdaysUsedAt = 43;
constexpr auto ScanInterval = minutes(2); ///< until a continuous task finds changes again

void PutWord(std::string& blob, size_t at, uint32_t word) {
    for (size_t i = 0; i < 4; ++i)
        blob[at + i] = static_cast<char>(word >> (8 * i));
}

uint32_t GetWord(const std::string& blob, size_t at) {
    uint32_t word = 0;
    for (size_t i = 0; i < 4; ++i)
        word |= static_cast<uint32_t>(static_cast<unsigned char>(blob[at + i])) << (8 * i);
    return word;
}

struct Civil {
    year_month_day date;
    hh_mm_ss<seconds> time;
};

Civil CivilOf(SimTime at) {
    const auto day = floor<days>(at);
    return {year_month_day(day), hh_mm_ss<seconds>(floor<seconds>(at - day))};
}

} // namespace

std::string Schedule::ToBlob() const {
    std::string blob(BlobSize, '\0');
    PutWord(blob, KindAt, static_cast<uint32_t>(kind));
    PutWord(blob, ModeAt, static_cast<uint32_t>(mode));
    const auto [date, time] = CivilOf(start);
    const uint32_t words[] = {static_cast<uint32_t>(static_cast<int>(date.year())),
                              static_cast<unsigned>(date.month()),
                              static_cast<unsigned>(date.day()),
                              static_cast<uint32_t>(time.hours().count()),
                              static_cast<uint32_t>(time.minutes().count()),
                              static_cast<uint32_t>(time.seconds().count())};
    for (size_t i = 0; i < std::size(words); ++i)
        PutWord(blob, StartAt + 4 * i, words[i]);
    for (size_t i = 0; i < weekdays.size(); ++i)
        blob[WeekdaysAt + i] = weekdays[i] ? '\1' : '\0';
    // What recurs without being a backup says so by its weekdays alone.
    const bool told = kind == ScheduleKind::Service || kind == ScheduleKind::Sync;
    blob[WeekdaysUsedAt] = told || mode == ScheduleMode::Weekdays ? '\1' : '\0';
    return blob;
}

std::optional<Schedule> Schedule::FromBlob(const std::string& blob) {
    if (blob.size() != BlobSize)
        return {};
    Schedule schedule;
    schedule.kind = static_cast<ScheduleKind>(GetWord(blob, KindAt));
    schedule.mode = static_cast<ScheduleMode>(GetWord(blob, ModeAt));
    const auto word = [&](size_t i) { return static_cast<int>(GetWord(blob, StartAt + 4 * i)); };
    schedule.start = MakeTime(word(0), static_cast<unsigned>(word(1)), static_cast<unsigned>(word(2)),
                              word(3), word(4), word(5));
    for (size_t i = 0; i < schedule.weekdays.size(); ++i)
        schedule.weekdays[i] = blob[WeekdaysAt + i] != '\0';
    return schedule;
}

std::optional<SimTime> Schedule::NextRun(SimTime now) const {
    if (kind == ScheduleKind::Once)
        return {};
    if (mode == ScheduleMode::Continuous)
        return now + ScanInterval;
    const auto timeOfDay = start - floor<days>(start);
    const SimTime after = std::max(now, start - milliseconds(1));
    for (auto day = floor<days>(after); day <= floor<days>(after) + days(7); day += days(1)) {
        const bool chosen = mode != ScheduleMode::Weekdays || weekdays[weekday(day).c_encoding()];
        if (chosen && day + timeOfDay > after)
            return day + timeOfDay;
    }
    return {}; // no weekday is chosen
}

SimTime LocalNow() {
    const auto now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    const std::tm* local = std::localtime(&seconds);
    const auto fraction = duration_cast<milliseconds>(now.time_since_epoch()) % 1000;
    return MakeTime(local->tm_year + 1900, static_cast<unsigned>(local->tm_mon + 1),
                    static_cast<unsigned>(local->tm_mday), local->tm_hour, local->tm_min, local->tm_sec) +
           fraction;
}

SimTime MakeTime(int year, unsigned month, unsigned day, int hour, int minute, int second) {
    const year_month_day date{std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)};
    return sys_days(date) + hours(hour) + minutes(minute) + seconds(second);
}

std::string FormatTime(SimTime time) {
    const auto [date, clock] = CivilOf(time);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text;
}

std::optional<SimTime> ParseTime(const std::string& text) {
    std::istringstream in(text);
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    char separator = 0;
    in >> year >> separator >> month >> separator >> day;
    in >> hour >> separator >> minute >> separator >> second;
    if (!in)
        return {};
    return MakeTime(year, static_cast<unsigned>(month), static_cast<unsigned>(day), hour, minute, second);
}

int64_t StampOf(SimTime time) {
    return duration_cast<seconds>(time - MakeTime(1601, 1, 1)).count();
}

} // namespace devservice
