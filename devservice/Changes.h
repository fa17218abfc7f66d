#pragma once

#include "devservice/Task.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace devservice {

/// One run of a task that has ended.
struct ProcessLogRow {
    std::string taskId;
    SimTime start{};
    SimTime stop{};
    std::string reason;
    int total = 0;
    int failed = 0;
    int processed = 0;
};

/// A change of a file in a sync folder: operation 'a', 'd' or 'm'.
struct HistoryRow {
    std::string uri;
    char operation = 'm';
    std::string updater;
    std::string computer;
    std::string virtualDirectory;
    SimTime time{};
};

/// Where the versions of a sync folder's file are kept on the storage.
inline std::string VersionUri(const std::string& folder, const std::string& file) {
    return "/43811DCD-8C5A-4EF9-B903-2EEA9CE88487/" + folder + '/' + file;
}

struct SubTaskChanges {
    bool all = false; ///< the whole table is to be written again
    std::set<int> numbers;
};

/// What the files do not hold yet.
struct Changes {
    std::set<std::string> tasks; ///< written, or removed when there is no such task any more
    std::map<std::string, SubTaskChanges> subTasks;
    std::vector<ProcessLogRow> processLog;
    std::vector<HistoryRow> history;
    std::vector<AuditRow> audit;
};

} // namespace devservice
