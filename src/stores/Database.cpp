#include "stores/Database.h"

#include "platform/Sleep.h"
#include "stores/SqliteError.h"
#include "stores/Statement.h"

#include "zep/TracePrintf.h"

#include <sqlite3.h>

#include <map>
#include <mutex>

namespace {

constexpr size_t LongestPath = 520;
constexpr int BusyMilliseconds = 500;
constexpr int StepsBetweenStopChecks = 1000;

bool IsWorthRetrying(ReadOutcome outcome) {
    return outcome == ReadOutcome::Busy || outcome == ReadOutcome::HotJournal;
}

void Harden(sqlite3* connection, OpenMode mode) {
    sqlite3_extended_result_codes(connection, 1);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(connection, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    if (mode == OpenMode::ReadOnly)
        sqlite3_db_config(connection, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

/// Pages read every few seconds: a cause is traced when it comes, changes or goes, not at each read.
void TraceChangeOfCause(const std::filesystem::path& file, const ReadResult& result) {
    static std::mutex mutex;
    static std::map<std::filesystem::path, ReadOutcome> causes;
    if (result.outcome == ReadOutcome::Stopped)
        return;
    {
        const std::lock_guard lock(mutex);
        const auto known = causes.find(file);
        const ReadOutcome before = known == causes.end() ? ReadOutcome::Done : known->second;
        if (before == result.outcome)
            return;
        if (result)
            causes.erase(known);
        else
            causes.insert_or_assign(file, result.outcome);
    }
    const QString text =
        result ? QStringLiteral("The database is readable again: ") + DisplayPath(file) : result.Sentence();
    TracePrintf(TraceLevel::Info, QStringLiteral("[Database]%1\n").arg(text));
}

} // namespace

Database::Database(const std::filesystem::path& file, const OpenRule& rule, std::stop_token stop,
                   OpenMode mode)
    : m_file(file), m_stop(std::move(stop)), m_result(Open(rule, mode)) {
    TraceChangeOfCause(m_file, m_result);
}

Database::~Database() {
    sqlite3_close_v2(m_connection);
}

ReadResult Database::Open(const OpenRule& rule, OpenMode mode) {
    if (m_stop.stop_requested())
        return {ReadOutcome::Stopped, {}};
    if (m_file.empty() || m_file.u16string().size() > LongestPath)
        return {ReadOutcome::Failed, QStringLiteral("no usable file name: %1").arg(DisplayPath(m_file))};
    const std::u8string name = m_file.u8string();
    const int access = mode == OpenMode::ReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    if (sqlite3_open_v2(reinterpret_cast<const char*>(name.c_str()), &m_connection,
                        access | SQLITE_OPEN_NOMUTEX, nullptr) != SQLITE_OK)
        return OpeningResult(m_connection, m_file);
    Harden(m_connection, mode);
    sqlite3_progress_handler(
        m_connection, StepsBetweenStopChecks,
        [](void* stop) { return static_cast<int>(static_cast<std::stop_token*>(stop)->stop_requested()); },
        &m_stop);
    // Opening touches nothing yet; the first read is what meets a lock. Only the last attempt waits inside
    // SQLite.
    for (int attempt = 1;; ++attempt) {
        const bool last = attempt >= rule.attempts;
        sqlite3_busy_timeout(m_connection, last ? BusyMilliseconds : 0);
        sqlite3_exec(m_connection, "PRAGMA schema_version", nullptr, nullptr, nullptr);
        ReadResult result = OpeningResult(m_connection, m_file);
        if (last || !IsWorthRetrying(result.outcome)) {
            sqlite3_busy_timeout(m_connection, BusyMilliseconds);
            return result;
        }
        if (!platform::SleepUnlessStopped(m_stop, rule.interval))
            return {ReadOutcome::Stopped, {}};
    }
}

Statement Database::Prepare(const QString& sql, int columns, const QString& failureTrace) {
    if (!m_result)
        return Statement(m_result);
    sqlite3_stmt* prepared = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    if (sqlite3_prepare_v2(m_connection, utf8.constData(), static_cast<int>(utf8.size()), &prepared,
                           nullptr) != SQLITE_OK) {
        TraceFailure(m_connection, failureTrace);
        return Statement(LastResult(m_connection));
    }
    Statement statement(prepared);
    if (sqlite3_column_count(prepared) < columns)
        return Statement(ReadResult{ReadOutcome::OtherSchema, DisplayPath(m_file)});
    return statement;
}
