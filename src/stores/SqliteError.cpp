#include "stores/SqliteError.h"

#include "zep/Text.h"
#include "zep/TracePrintf.h"

#include <QFileInfo>

#include <sqlite3.h>

#include <fstream>

namespace {

ReadOutcome OutcomeOfError(sqlite3* connection) {
    // A user's filter text can make a statement that is none; only a missing name is another schema.
    return LastErrorText(connection).startsWith(QLatin1String("no such ")) ? ReadOutcome::OtherSchema
                                                                           : ReadOutcome::Failed;
}

ReadOutcome OutcomeOf(sqlite3* connection) {
    const int code = sqlite3_extended_errcode(connection);
    switch (code) {
    case SQLITE_READONLY_ROLLBACK:
        return ReadOutcome::HotJournal;
    case SQLITE_IOERR_SHORT_READ:
    case SQLITE_CANTOPEN_ISDIR:
        return ReadOutcome::Damaged;
    default:
        break;
    }
    switch (code & 0xff) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
        return ReadOutcome::Done;
    case SQLITE_INTERRUPT:
        return ReadOutcome::Stopped;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
        return ReadOutcome::Busy;
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        return ReadOutcome::Damaged;
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return ReadOutcome::NoRight;
    case SQLITE_ERROR:
        return OutcomeOfError(connection);
    default:
        return ReadOutcome::Failed;
    }
}

/// The right that a reader of this file lacks, in words; empty when it has all of them.
QString MissingRight(const std::filesystem::path& file) {
    if (!std::ifstream(file).is_open())
        return QStringLiteral("read %1").arg(DisplayPath(file));
    for (const char* suffix : {"-shm", "-wal"}) {
        std::filesystem::path side = file;
        side += suffix;
        std::error_code error;
        const bool exists = std::filesystem::exists(side, error);
        if (exists && !std::fstream(side).is_open())
            return QStringLiteral("read and write %1").arg(DisplayPath(side));
        if (!exists && !QFileInfo(DisplayPath(file.parent_path())).isWritable())
            return QStringLiteral("create %1").arg(DisplayPath(side));
    }
    return {};
}

} // namespace

QString DisplayPath(const std::filesystem::path& file) {
    return QString::fromStdU16String(file.u16string());
}

QString LastErrorText(sqlite3* connection) {
    return ZEPUTF8ToUnicode(sqlite3_errmsg(connection));
}

void TraceFailure(sqlite3* connection, const QString& beginning) {
    if (!beginning.isEmpty())
        TracePrintf(TraceLevel::Info, beginning + LastErrorText(connection) + QLatin1Char('\n'));
}

ReadResult LastResult(sqlite3* connection) {
    const ReadOutcome outcome = OutcomeOf(connection);
    if (outcome == ReadOutcome::Done)
        return {};
    const char* name = sqlite3_db_filename(connection, "main");
    const QString file = ZEPUTF8ToUnicode(name != nullptr ? name : "");
    return {outcome, QStringLiteral("%1 (%2)").arg(file, LastErrorText(connection))};
}

ReadResult OpeningResult(sqlite3* connection, const std::filesystem::path& file) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (status.type() == std::filesystem::file_type::not_found)
        return {ReadOutcome::Missing, DisplayPath(file)};
    if (status.type() == std::filesystem::file_type::directory)
        return {ReadOutcome::Damaged, DisplayPath(file)};
    ReadResult result = LastResult(connection);
    if (result.outcome != ReadOutcome::NoRight)
        return result;
    const QString right = MissingRight(file);
    return right.isEmpty() ? ReadResult{ReadOutcome::Failed, result.detail}
                           : ReadResult{ReadOutcome::NoRight, right};
}
