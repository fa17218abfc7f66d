#pragma once

#include "cards/CardPanel.h"
#include "stores/SchedulerStore.h"
#include "syncplan/SyncFolders.h"

#include <atomic>

/// A sync folder as a card shows it.
struct SyncRow : CardEntry {
    SyncFolder folder = {};
    QString taskId = {}; ///< as the service told it; empty: it has no task, or was not asked yet
    std::optional<TaskInfo> task = {}; ///< none while nothing is known of the task
    SubTaskCounts counts = {};
    int failed = 0;           ///< files that went wrong and have not been synchronised since
    QString pausedSince = {}; ///< a sentence; empty unless it is paused

    bool IsRunning() const { return task && task->state == TaskState::Running; }
};

/// "3 files failed"; empty for none.
QString FailedFilesText(int failed);

/// What reads of the list remember of the last one. The service's lane, but for `more`.
struct SyncMemory {
    struct Known {
        QString taskId;
        bool wasAsked = false;
        int failed = 0;
    };

    QHash<QString, Known> folders; ///< by name without its case
    bool wasRead = false;
    std::atomic<bool> more = false; ///< folders whose task is still to be asked for
};

/// Reads the list and what is known of each folder's task. A task's identifier is asked for when its folder
/// is new and when its row is gone, a few at a read. The counters outlive it.
std::function<CardEntries(std::stop_token)> SyncListReader(const ServiceClient& service,
                                                           const LiveCounters& counters,
                                                           std::shared_ptr<SyncMemory> memory);
