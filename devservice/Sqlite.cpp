#include "devservice/Sqlite.h"

#include "platform/Folders.h"

#include <sqlite3.h>

namespace devservice {

namespace {

[[noreturn]] void Throw(sqlite3* handle) {
    throw SqliteError(sqlite3_errmsg(handle));
}

} // namespace

void Connection::Close::operator()(sqlite3* handle) const {
    sqlite3_close_v2(handle);
}

Connection::Connection(const std::filesystem::path& file, int busyMilliseconds) {
    sqlite3* handle = nullptr;
    const int result = sqlite3_open_v2(platform::Utf8FromPath(file).c_str(), &handle,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    m_handle.reset(handle);
    if (result != SQLITE_OK)
        Throw(handle);
    sqlite3_busy_timeout(handle, busyMilliseconds);
}

void Connection::Execute(const std::string& sql) {
    if (sqlite3_exec(m_handle.get(), sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        Throw(m_handle.get());
}

void Statement::Finalize::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

Statement::Statement(const Connection& connection, const std::string& sql)
    : m_connection(connection.Handle()) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(m_connection, sql.c_str(), -1, &statement, nullptr));
    m_statement.reset(statement);
}

void Statement::Check(int result) const {
    if (result != SQLITE_OK)
        Throw(m_connection);
}

Statement& Statement::Bind(const std::string& text) {
    Check(sqlite3_bind_text(m_statement.get(), m_next++, text.data(), static_cast<int>(text.size()),
                            SQLITE_TRANSIENT));
    return *this;
}

Statement& Statement::Bind(int64_t number) {
    Check(sqlite3_bind_int64(m_statement.get(), m_next++, number));
    return *this;
}

Statement& Statement::BindBlob(const std::string& octets) {
    Check(sqlite3_bind_blob(m_statement.get(), m_next++, octets.data(), static_cast<int>(octets.size()),
                            SQLITE_TRANSIENT));
    return *this;
}

Statement& Statement::BindNull() {
    Check(sqlite3_bind_null(m_statement.get(), m_next++));
    return *this;
}

void Statement::Run() {
    while (Step()) {
    }
}

bool Statement::Step() {
    const int result = sqlite3_step(m_statement.get());
    if (result == SQLITE_ROW)
        return true;
    m_next = 1;
    Check(sqlite3_reset(m_statement.get()));
    return false;
}

std::string Statement::Text(int column) const {
    const auto* octets = static_cast<const char*>(sqlite3_column_blob(m_statement.get(), column));
    const int size = sqlite3_column_bytes(m_statement.get(), column);
    return octets ? std::string(octets, static_cast<size_t>(size)) : std::string();
}

int64_t Statement::Integer(int column) const {
    return sqlite3_column_int64(m_statement.get(), column);
}

Transaction::Transaction(Connection& connection) : m_connection(connection) {
    m_connection.Execute("BEGIN IMMEDIATE");
}

Transaction::~Transaction() {
    if (m_open)
        sqlite3_exec(m_connection.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::Commit() {
    m_connection.Execute("COMMIT"); // when a reader keeps it from this, the destructor rolls back
    m_open = false;
}

} // namespace devservice
