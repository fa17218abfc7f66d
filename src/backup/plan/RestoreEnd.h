#pragma once

#include "stores/ProcessLogStore.h"

/// How the restore of a name has ended, as far as it is known.
struct RestoreEnd {
    bool ended = false;
    QString taskId = {};
    ProcessLogRecord run = {}; ///< its last one
};

/// Of the task of this name that was started last.
RestoreEnd ReadRestoreEnd(const QString& name, const std::stop_token& stop = {});

/// As in "4,298 restored, 12 failed"; one that processed nothing has not restored.
QString RestoredText(const ProcessLogRecord& run);
/// As in "12 failed"; empty for none.
QString FailedText(const ProcessLogRecord& run);
