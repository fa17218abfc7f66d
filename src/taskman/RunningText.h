#pragma once

#include "zep/LiveCounters.h"

/// What a running sub-task of this operation does: "Uploading", "Downloading" or the operation's name.
QString OperationWords(const QString& operation);

/// The cell of the icon that says which way a running sub-task moves a file, or what else it does.
QString OperationCell(const QString& operation);

/// The name of a file that runs: parts of it keep their number, not the mark before it.
QString ShownFileName(const QString& fileName);

/// A watcher waits for changes of a sync folder and moves nothing by itself.
bool IsSyncWatcher(const RunningSubTask& running);
