#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace devservice {

/// The machine's wall clock as the service keeps it: local time, milliseconds.
using SimTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::milliseconds>;

/// What a task is to the service; the first word of the stored schedule.
enum class ScheduleKind : uint32_t { Once = 1, Service = 2, Sync = 3, Backup = 4 };

enum class ScheduleMode : uint32_t { Continuous = 0, Daily = 1, Weekdays = 2 };

/// When a task runs. Stored as 308 octets, little-endian: words of kind and mode, six words of the start
/// (year to second), one octet a weekday from Sunday at 36, and at 43 whether the weekdays are in use.
struct Schedule {
    static constexpr size_t BlobSize = 308;

    ScheduleKind kind = ScheduleKind::Once;
    ScheduleMode mode = ScheduleMode::Continuous;
    SimTime start{};
    std::array<bool, 7> weekdays{true, true, true, true, true, true, true}; ///< Sunday first

    std::string ToBlob() const;
    static std::optional<Schedule> FromBlob(const std::string& blob); ///< none when not of 308 octets

    /// The first run after `now`; none for a task that runs once.
    std::optional<SimTime> NextRun(SimTime now) const;
};

SimTime LocalNow();
SimTime MakeTime(int year, unsigned month, unsigned day, int hour = 0, int minute = 0, int second = 0);
std::string FormatTime(SimTime time);                      ///< as in "2025-03-04 09:05:00"
std::optional<SimTime> ParseTime(const std::string& text); ///< what FormatTime wrote
int64_t StampOf(SimTime time);                             ///< seconds since the start of 1601

} // namespace devservice
