#pragma once

#include "stores/Database.h"

struct sqlite3;

/// Whether plain files stand where the database and what belongs to it are opened. Anything else, such as a
/// pipe, could keep the opening waiting for ever.
ReadResult PlaceResult(const std::filesystem::path& file);

/// What the connection's last call says, as one of our outcomes; a missing right is named. Private to the
/// stores.
ReadResult LastResult(sqlite3* connection);

/// The same of an opening or of a first read. One that was to write and may only read lacks a right.
ReadResult OpeningResult(sqlite3* connection, const std::filesystem::path& file, OpenMode mode);

/// SQLite's words for the connection's last failure.
QString LastErrorText(sqlite3* connection);

/// Traces `beginning` and SQLite's words; nothing when it is empty.
void TraceFailure(sqlite3* connection, const QString& beginning);
