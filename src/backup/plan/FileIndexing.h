#pragma once

#include <QString>

#include <stop_token>

/// What the file monitor says of the index that backups by file type are made from.
enum class FileIndexState {
    Kept,       ///< the monitor runs and keeps the index
    NeverBuilt, ///< the monitor waits for the word to build it
    NotRunning,
    CannotBeOpened, ///< the system does not know the monitor, or does not let us ask
    Unknown,        ///< the system's services cannot be asked at all
};

/// Asks the system; takes moments. What fails is traced.
FileIndexState AskFileIndex(const std::stop_token& stop = {});
/// The same without regard to whether the index was ever built.
FileIndexState AskFileMonitor(const std::stop_token& stop = {});

/// What is told where the index cannot be used; empty when it can, and where there is nothing to say.
QString FileIndexRefusal(FileIndexState state);

// The words to the monitor; one that nobody waits for goes nowhere.

void BeginFileIndex();    ///< build it, where it was never built
void ForceFileIndex();    ///< build it anew
void ForgetFileIndexed(); ///< say again when it is up to date

/// Said where the monitor has ended before its work.
QString FileIndexLostText();

/// How far the building of the index is.
struct FileIndexing {
    enum class End { Running, Built, Gone };
    End end = End::Running; ///< Gone: the monitor has ended before its work
    qint64 files = 0;       ///< in the index so far
};
FileIndexing ReadFileIndexing(const std::stop_token& stop = {});
