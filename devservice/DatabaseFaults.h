#pragma once

#include "devservice/Databases.h"
#include "devservice/Faults.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace devservice {

/// Locks, damages and undoes damage to the service's files, one fault a file. One thread at a time, but the
/// statistics.
class DatabaseFaults {
public:
    explicit DatabaseFaults(Databases& databases) : m_databases(databases) {}
    ~DatabaseFaults();

    /// Throws SqliteError where a lock is not to be had, std::runtime_error for what is no database of ours.
    void Set(const DatabaseFaultSwitch& fault);
    void ClearAll();
    /// Puts back what a service that was killed during a fault has kept; before anything is opened.
    void PutBackKept();
    /// Lets go of locks whose time is over; to be called now and then.
    void ReleaseExpired();
    WriterStatistics Statistics() const;

private:
    struct Active {
        DatabaseFault fault = DatabaseFault::None;
        std::unique_ptr<Connection> lock;
        std::optional<std::chrono::steady_clock::time_point> until;
        std::jthread writer;
    };

    void Clear(const std::filesystem::path& file);
    void Damage(const std::filesystem::path& file, DatabaseFault fault);
    void CommitOften(std::stop_token stop, Connection& connection, const std::string& change,
                     std::chrono::milliseconds every);
    void CommitOnce(Connection& connection, const std::string& change);

    Databases& m_databases;
    std::map<std::filesystem::path, Active> m_active;
    mutable std::mutex m_mutex; ///< guards the statistics
    WriterStatistics m_statistics;
};

} // namespace devservice
