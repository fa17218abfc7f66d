#include "stores/SqliteError.h"

#include "platform/FileAccess.h"
#include "platform/Folders.h"
#include "zep/Text.h"
#include "zep/TracePrintf.h"

#include <sqlite3.h>

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;

namespace {

ReadOutcome OutcomeOfError(sqlite3* connection) {
    // A user's filter text can make a statement that is none; only a missing name is another schema.
    return LastErrorText(connection).startsWith("no such "_L1) ? ReadOutcome::OtherSchema
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
    case SQLITE_MISMATCH: // a limit that is no integer
        return ReadOutcome::BadStatement;
    default:
        return ReadOutcome::Failed;
    }
}

bool IsDenied(const fs::path& path, platform::FileRight right) {
    return platform::ProbeAccess(path, right) == platform::FileAccess::Denied;
}

fs::path Beside(const fs::path& file, const char* suffix) {
    fs::path side = file;
    return side += suffix;
}

/// The right that is missing to read or to change the database, in words; empty when it is none.
QString MissingRight(const fs::path& file, OpenMode mode) {
    using enum platform::FileRight;
    if (IsDenied(file, Read))
        return u"read %1"_s.arg(FromPath(file));
    if (mode == OpenMode::ReadWrite && IsDenied(file, Write))
        return u"write %1"_s.arg(FromPath(file));
    for (const char* suffix : {"-shm", "-wal", "-journal"}) {
        const fs::path side = Beside(file, suffix);
        if (IsDenied(side, Read))
            return u"read %1"_s.arg(FromPath(side));
        if (IsDenied(side, Write))
            return u"write %1"_s.arg(FromPath(side));
    }
    if (IsDenied(file.parent_path(), MakeFilesIn))
        return u"create files in %1"_s.arg(FromPath(file.parent_path()));
    return {};
}

ReadResult ResultOf(sqlite3* connection, const fs::path& file, OpenMode mode) {
    ReadOutcome outcome = OutcomeOf(connection);
    // Where a file may not be written, SQLite opens it for reading and says so at the first write only.
    if (outcome == ReadOutcome::Done && mode == OpenMode::ReadWrite &&
        sqlite3_db_readonly(connection, "main") == 1)
        outcome = ReadOutcome::NoRight;
    if (outcome == ReadOutcome::Done)
        return {};
    if (outcome == ReadOutcome::NoRight) {
        const QString right = MissingRight(file, mode);
        if (!right.isEmpty())
            return {outcome, right};
        outcome = ReadOutcome::Failed;
    }
    return {outcome, u"%1 (%2)"_s.arg(FromPath(file), LastErrorText(connection))};
}

} // namespace

ReadResult PlaceResult(const fs::path& file) {
    using enum fs::file_type;
    for (const char* suffix : {"", "-journal", "-wal", "-shm"}) {
        const fs::path place = Beside(file, suffix);
        std::error_code error;
        const fs::file_type type = fs::status(place, error).type();
        if (type == not_found && *suffix == '\0')
            return {ReadOutcome::Missing, FromPath(place)};
        // What cannot be looked at is told by the opening.
        if (type != not_found && type != regular && type != none && type != unknown)
            return {ReadOutcome::Damaged, FromPath(place)};
    }
    return {};
}

QString LastErrorText(sqlite3* connection) {
    return ZEPUTF8ToUnicode(sqlite3_errmsg(connection));
}

void TraceFailure(sqlite3* connection, const QString& beginning) {
    if (!beginning.isEmpty())
        TracePrintf(TraceLevel::Info, beginning + LastErrorText(connection) + QLatin1Char('\n'));
}

ReadResult LastResult(sqlite3* connection) {
    const char* name = sqlite3_db_filename(connection, "main");
    const bool writes = sqlite3_db_readonly(connection, "main") == 0;
    return ResultOf(connection, platform::PathFromUtf8(name != nullptr ? name : ""),
                    writes ? OpenMode::ReadWrite : OpenMode::ReadOnly);
}

ReadResult OpeningResult(sqlite3* connection, const fs::path& file, OpenMode mode) {
    ReadResult place = PlaceResult(file);
    return place ? ResultOf(connection, file, mode) : place;
}
