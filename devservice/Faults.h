#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace devservice {

enum class HttpFault {
    None,
    Refuse,        ///< the port is closed; with a time it opens again by itself
    Hang,          ///< requests are read and never answered
    Delay,         ///< the answer starts `time` late
    Drip,          ///< the body comes an octet every `time`
    CutByFin,      ///< half of the body, then an orderly end
    CutByRst,      ///< half of the body, then a reset
    WrongStatus,   ///< the request acts, and `status` stands in place of the answer's
    Deny,          ///< `status`, and the request does nothing but be noted
    GarbageHeaders ///< octets that are no HTTP
};

struct HttpFaultSwitch {
    HttpFault fault = HttpFault::None;
    std::chrono::milliseconds time{0};
    int status = 500;
    std::string target; ///< only requests whose target contains this; all when empty
    int times = -1;     ///< ends after so many requests; -1 is never
};

enum class DatabaseFault {
    None,
    Locked,      ///< held exclusively; for `time`, or until cleared when that is 0
    Truncated,   ///< cut in the middle
    Garbage,     ///< replaced by a file that is no database
    Missing,     ///< removed
    OtherSchema, ///< replaced by a database with other tables
    FastWriter   ///< a connection of its own commits every `time`
};

/// The service keeps the damaged file's good copy and puts it back when the fault is cleared; meanwhile it
/// holds its own writes back.
struct DatabaseFaultSwitch {
    DatabaseFault fault = DatabaseFault::None;
    std::filesystem::path file; ///< one of DevService's database files
    std::chrono::milliseconds time{0};
};

/// What the fast writer has done since it was switched on.
struct WriterStatistics {
    int commits = 0;
    int failures = 0;
    std::chrono::microseconds longest{0};
};

/// "none", "refuse[:MS]", "hang", "delay:MS", "drip:MS", "fin", "rst", "status:N", "deny:N", "garbage", each
/// with "@TARGET" behind it where it is for some requests only. None when the text is not understood.
std::optional<HttpFaultSwitch> ParseHttpFault(std::string_view text);

/// "db-locked[:MS]", "db-truncated", "db-garbage", "db-missing", "db-schema", "db-writer:MS", "db-none", each
/// with "@NAME" behind it, a database's name or a task's identifier; without it the scheduler is meant, and
/// by "db-none" every database.
struct NamedDatabaseFault {
    DatabaseFault fault = DatabaseFault::None;
    std::string database;
    std::chrono::milliseconds time{0};
};
std::optional<NamedDatabaseFault> ParseDatabaseFault(std::string_view text);

} // namespace devservice
