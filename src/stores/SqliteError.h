#pragma once

#include "stores/ReadResult.h"

#include <filesystem>

struct sqlite3;

/// What the connection's last call says, as one of our outcomes. Private to the stores.
ReadResult LastResult(sqlite3* connection);

/// The same of an opening or of a first read, where a missing file or right can be told from the file system.
ReadResult OpeningResult(sqlite3* connection, const std::filesystem::path& file);

/// SQLite's words for the connection's last failure.
QString LastErrorText(sqlite3* connection);

/// Traces `beginning` and SQLite's words; nothing when it is empty.
void TraceFailure(sqlite3* connection, const QString& beginning);

QString DisplayPath(const std::filesystem::path& file);
