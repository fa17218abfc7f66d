#include "stores/Database.h"

#include "platform/Folders.h"
#include "platform/Sleep.h"
#include "stores/CauseLog.h"
#include "stores/SqliteError.h"
#include "stores/Statement.h"
#include "zep/Text.h"

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype LongestPath = 520;
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
    // A walk prepares once and reads each page once: what would be kept for the next time is only memory (in
    // KiB).
    sqlite3_db_config(connection, SQLITE_DBCONFIG_LOOKASIDE, nullptr, 0, 0);
    sqlite3_exec(connection, "PRAGMA cache_size=-64", nullptr, nullptr, nullptr);
}

} // namespace

Database::Database(const std::filesystem::path& file, const OpenRule& rule, std::stop_token stop,
                   OpenMode mode)
    : m_file(file), m_stop(std::move(stop)), m_result(Open(rule, mode)) {
    NoteStep(m_file, u"open"_s, m_result);
}

Database::~Database() {
    sqlite3_close_v2(m_connection);
}

ReadResult Database::Open(const OpenRule& rule, OpenMode mode) {
    if (m_stop.stop_requested())
        return {ReadOutcome::Stopped, {}};
    const QString shown = FromPath(m_file);
    if (shown.isEmpty() || shown.size() > LongestPath)
        return {ReadOutcome::Failed, u"no usable file name: %1"_s.arg(shown)};
    if (ReadResult place = PlaceResult(m_file); !place)
        return place;
    const std::string name = platform::Utf8FromPath(m_file);
    const int access = mode == OpenMode::ReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    if (sqlite3_open_v2(name.c_str(), &m_connection, access | SQLITE_OPEN_NOMUTEX, nullptr) != SQLITE_OK)
        return OpeningResult(m_connection, m_file, mode);
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
        ReadResult result = OpeningResult(m_connection, m_file, mode);
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
    const bool isStatement = sqlite3_prepare_v2(m_connection, utf8.constData(), static_cast<int>(utf8.size()),
                                                &prepared, nullptr) == SQLITE_OK;
    ReadResult result = isStatement ? ReadResult() : LastResult(m_connection);
    const QString words = isStatement ? QString() : failureTrace + LastErrorText(m_connection);
    // Statements that a user's own words are part of may fail for these.
    const QString step = failureTrace.isEmpty() ? QString() : sql;
    Statement statement(prepared, m_file, u"walk "_s + step);
    if (isStatement && sqlite3_column_count(prepared) < columns)
        result = {ReadOutcome::OtherSchema, FromPath(m_file)};
    if (!step.isEmpty())
        NoteStep(m_file, u"prepare "_s + step, result, words);
    return result ? std::move(statement) : Statement(result);
}
