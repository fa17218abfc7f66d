#pragma once

#include "devservice/Sqlite.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>

namespace devservice {

/// How the file monitor behaves: it is there, or not, or takes that long, or never ends what it was told to
/// do.
struct FileMonitorSwitch {
    enum class Kind { Running, Absent, Slow, Failing };
    Kind kind = Kind::Absent;
    std::chrono::milliseconds time{0}; ///< of Slow: how long an index takes beside its work
};

/// "running", "absent", "slow:MS" or "failing".
std::optional<FileMonitorSwitch> ParseFileMonitor(const std::string& text);

/// Writes the files below the folder, and whatever it held before goes; ends early, and false, when told to
/// stop. Throws SqliteError.
bool IndexFiles(Connection& index, const std::filesystem::path& folder, std::chrono::milliseconds time = {},
                const std::stop_token& stop = {});

/// A stand-in for the service that keeps the index of the machine's files: it waits for the named events,
/// indexes a real folder, and says by another event that it has. Its thread writes the index by a connection
/// of its own.
class FileMonitor {
public:
    /// `folder` is what is indexed into the file `index`, whose table stands; the lock of the service is
    /// taken in `home`.
    FileMonitor(std::filesystem::path home, std::filesystem::path folder, std::filesystem::path index);
    ~FileMonitor();

    /// From now on; what is under way is given up. From any thread.
    void Set(const FileMonitorSwitch& how);

private:
    class Run;
    const std::filesystem::path m_home;
    const std::filesystem::path m_folder;
    const std::filesystem::path m_index;
    std::mutex m_mutex; ///< held while a run is replaced
    std::unique_ptr<Run> m_run;
};

} // namespace devservice
