#include "stores/Statement.h"

#include "stores/CauseLog.h"
#include "stores/SqliteError.h"

#include "zep/Text.h"

#include <sqlite3.h>

void Statement::Finalizer::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

bool Statement::Check(int code, const QString& failureTrace) {
    if (code == SQLITE_OK)
        return true;
    if (m_statement) {
        m_result = LastResult(sqlite3_db_handle(m_statement.get()));
        TraceFailure(sqlite3_db_handle(m_statement.get()), failureTrace);
    }
    return false;
}

bool Statement::Reset(const QString& failureTrace) {
    if (m_statement)
        m_result = {};
    return Check(sqlite3_reset(m_statement.get()), failureTrace);
}

bool Statement::Bind(int position, const QString& text, const QString& failureTrace) {
    const QByteArray utf8 = ZEPUnicodeToUTF8(text);
    return Check(sqlite3_bind_text64(m_statement.get(), position, utf8.constData(), utf8.size(),
                                     SQLITE_TRANSIENT, SQLITE_UTF8),
                 failureTrace);
}

bool Statement::Bind(int position, int number, const QString& failureTrace) {
    return Check(sqlite3_bind_int(m_statement.get(), position, number), failureTrace);
}

bool Statement::Step() {
    if (!m_statement)
        return false;
    const int code = sqlite3_step(m_statement.get());
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        m_result = LastResult(sqlite3_db_handle(m_statement.get()));
    return false;
}

void Statement::Finish(const QString& failureTrace) {
    if (!m_statement)
        return;
    const bool hasWords = !m_result && !failureTrace.isEmpty();
    NoteStep(m_file, m_step, m_result, hasWords ? failureTrace + ErrorText() : QString());
    sqlite3_reset(m_statement.get());
}

QString Statement::ErrorText() const {
    return LastErrorText(sqlite3_db_handle(m_statement.get()));
}

QString Statement::Text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_statement.get(), column));
    if (text == nullptr)
        return {};
    return ZEPUTF8ToUnicode(QByteArrayView(text, sqlite3_column_bytes(m_statement.get(), column)));
}

int Statement::Integer(int column) const {
    return sqlite3_column_int(m_statement.get(), column);
}

qint64 Statement::Integer64(int column) const {
    return sqlite3_column_int64(m_statement.get(), column);
}

QByteArrayView Statement::Blob(int column) const {
    const void* data = sqlite3_column_blob(m_statement.get(), column);
    return {static_cast<const char*>(data), sqlite3_column_bytes(m_statement.get(), column)};
}
