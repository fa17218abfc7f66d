#pragma once

#include "stores/ReadResult.h"

#include <chrono>
#include <filesystem>
#include <stop_token>

struct sqlite3;
class Statement;

/// How often an opening is tried while the database is locked.
struct OpenRule {
    int attempts = 30;
    std::chrono::milliseconds interval{100};
};

/// One attempt, for databases that are asked again by the user.
inline constexpr OpenRule OpenOnce{1, std::chrono::milliseconds(0)};

enum class OpenMode { ReadOnly, ReadWrite };

/// One connection to one of the service's databases, for one read. The stop token ends whatever runs on it
/// within moments. One thread at a time.
class Database {
public:
    Database(const std::filesystem::path& file, const OpenRule& rule, std::stop_token stop,
             OpenMode mode = OpenMode::ReadOnly);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    const ReadResult& OpenResult() const { return m_result; }

    /// The statement, or one that never yields a row and says why: the opening failed, or the preparing did,
    /// which is traced as `failureTrace` and SQLite's words when it begins, unless that is empty. With fewer
    /// than `columns` columns it is one of another schema.
    Statement Prepare(const QString& sql, int columns, const QString& failureTrace = {});

private:
    ReadResult Open(const OpenRule& rule, OpenMode mode);

    std::filesystem::path m_file;
    std::stop_token m_stop;
    sqlite3* m_connection = nullptr;
    ReadResult m_result;
};
