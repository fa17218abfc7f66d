#include "devservice/DatabaseFaults.h"

#include <algorithm>
#include <fstream>

namespace devservice {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

namespace {

/// A statement that changes some rows of whichever of our tables the file holds.
struct SmallChange {
    const char* table;
    const char* statement;
};

constexpr SmallChange SmallChanges[] = {
    {"Scheduler", "UPDATE Scheduler SET RunCount = RunCount + 1"},
    {"SubTaskDBWorker", "UPDATE SubTaskDBWorker SET Retries = Retries + 1 WHERE TaskIndex % 10 = 0"},
    {"TaskProcessLog", "UPDATE TaskProcessLog SET ProcessedSubTasks = ProcessedSubTasks + 1"},
    {"AuditTrace", "INSERT INTO AuditTrace VALUES(0, 'The writer was here', datetime('now', 'localtime'))"},
    {"History", "UPDATE History SET Stamp = Stamp + 1"},
    {"FileDB", "UPDATE FileDB SET Size = Size + 1"},
};

std::string SmallChangeFor(const Connection& connection) {
    for (const SmallChange& change : SmallChanges) {
        Statement table(connection, "SELECT 1 FROM sqlite_master WHERE type='table' AND name=?");
        table.Bind(change.table);
        if (table.Step())
            return change.statement;
    }
    throw std::runtime_error("the fast writer knows no table of this database");
}

constexpr char KeptEnding[] = ".kept";

fs::path KeptCopy(const fs::path& file) {
    fs::path copy = file;
    copy += KeptEnding;
    return copy;
}

void RemoveWithSideFiles(const fs::path& file) {
    for (const char* ending : {"", "-wal", "-shm", "-journal"}) {
        fs::path each = file;
        each += ending;
        fs::remove(each);
    }
}

void PutBack(const fs::path& file) {
    RemoveWithSideFiles(file);
    fs::rename(KeptCopy(file), file);
}

std::string Garbage() {
    std::string octets;
    for (unsigned i = 0; i < 8192; ++i)
        octets += static_cast<char>(i * 2654435761U >> 13);
    return octets;
}

} // namespace

DatabaseFaults::~DatabaseFaults() {
    try {
        ClearAll();
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the home is going away
    }
}

void DatabaseFaults::Set(const DatabaseFaultSwitch& fault) {
    Clear(fault.file);
    if (fault.fault == DatabaseFault::None)
        return;
    if (!fs::exists(fault.file))
        throw std::runtime_error("there is no such database");
    Active active;
    active.fault = fault.fault;
    if (fault.fault == DatabaseFault::FastWriter) {
        const std::scoped_lock lock(m_mutex);
        m_statistics = {};
        auto connection = std::make_shared<Connection>(fault.file, 60'000);
        connection->Execute("PRAGMA synchronous=OFF");
        active.writer =
            std::jthread([this, connection, change = SmallChangeFor(*connection), every = fault.time](
                             std::stop_token stop) { CommitOften(stop, *connection, change, every); });
    } else {
        m_databases.Withhold(fault.file);
    }
    if (fault.fault == DatabaseFault::Locked) {
        try {
            active.lock = std::make_unique<Connection>(fault.file, 5000);
            active.lock->Execute(
                "PRAGMA locking_mode=EXCLUSIVE"); // in WAL mode nothing else keeps readers out
            active.lock->Execute("BEGIN EXCLUSIVE");
        } catch (const SqliteError&) {
            m_databases.Release(fault.file);
            throw;
        }
        if (fault.time > fault.time.zero())
            active.until = steady_clock::now() + fault.time;
    } else if (fault.fault != DatabaseFault::FastWriter) {
        Damage(fault.file, fault.fault);
    }
    m_active[fault.file] = std::move(active);
}

void DatabaseFaults::Damage(const fs::path& file, DatabaseFault fault) {
    // Whoever finds a kept copy puts it back, so there is none before it is whole.
    fs::path copy = KeptCopy(file);
    copy += ".new";
    fs::copy_file(file, copy, fs::copy_options::overwrite_existing);
    fs::rename(copy, KeptCopy(file));
    if (fault == DatabaseFault::Truncated) {
        fs::resize_file(file, fs::file_size(file) / 2);
        return;
    }
    RemoveWithSideFiles(file);
    if (fault == DatabaseFault::Garbage)
        std::ofstream(file, std::ios::binary) << Garbage();
    if (fault == DatabaseFault::OtherSchema)
        Connection(file).Execute("CREATE TABLE Inventory(Shelf TEXT, Amount INTEGER); "
                                 "INSERT INTO Inventory VALUES('A', 1)");
}

void DatabaseFaults::Clear(const fs::path& file) {
    const auto found = m_active.find(file);
    if (found == m_active.end())
        return;
    const bool damaged =
        found->second.fault != DatabaseFault::Locked && found->second.fault != DatabaseFault::FastWriter;
    m_active.erase(found);
    if (damaged)
        PutBack(file);
    m_databases.Release(file);
}

void DatabaseFaults::PutBackKept() {
    std::set<fs::path> folders; // several databases share one, and sub-tasks stand beside the scheduler's
    for (const Database database : AllDatabases)
        folders.insert(m_databases.FileOf(database).parent_path());
    std::vector<fs::path> files;
    for (const fs::path& folder : folders) {
        std::error_code missing;
        for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing))
            if (entry.path().extension() == KeptEnding)
                files.push_back(fs::path(entry.path()).replace_extension());
    }
    std::for_each(files.begin(), files.end(), PutBack);
}

void DatabaseFaults::ClearAll() {
    while (!m_active.empty())
        Clear(fs::path(m_active.begin()->first));
}

void DatabaseFaults::ReleaseExpired() {
    const auto expired = [](const auto& entry) {
        return entry.second.until && *entry.second.until <= steady_clock::now();
    };
    for (auto entry = m_active.begin(); entry != m_active.end();) {
        const auto next = std::next(entry);
        if (expired(*entry))
            Clear(fs::path(entry->first));
        entry = next;
    }
}

WriterStatistics DatabaseFaults::Statistics() const {
    const std::scoped_lock lock(m_mutex);
    return m_statistics;
}

void DatabaseFaults::CommitOften(std::stop_token stop, Connection& connection, const std::string& change,
                                 std::chrono::milliseconds every) {
    std::mutex mutex;
    std::condition_variable_any never;
    std::unique_lock lock(mutex);
    while (!stop.stop_requested()) {
        CommitOnce(connection, change);
        never.wait_for(lock, stop, every, [] { return false; });
    }
}

void DatabaseFaults::CommitOnce(Connection& connection, const std::string& change) {
    const auto begin = steady_clock::now();
    bool done = true;
    try {
        Transaction transaction(connection);
        connection.Execute(change);
        transaction.Commit();
    } catch (const SqliteError&) {
        done = false;
    }
    const auto took = std::chrono::duration_cast<std::chrono::microseconds>(steady_clock::now() - begin);
    const std::scoped_lock lock(m_mutex);
    ++(done ? m_statistics.commits : m_statistics.failures);
    m_statistics.longest = std::max(m_statistics.longest, took);
}

} // namespace devservice
