#pragma once

#include "devservice/DatabaseKinds.h"
#include "devservice/Faults.h"
#include "devservice/FileMonitor.h"
#include "devservice/HttpServer.h"
#include "devservice/Profile.h"
#include "devservice/Task.h"
#include "devservice/Writers.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace devservice {

struct Options {
    std::filesystem::path home; ///< the data folder; made when missing
    uint16_t port = 0;          ///< 0: a free one
    bool serverMode = false;
    std::string scenario = "empty"; ///< fills a home without a task database: empty, desktop, server, huge
    JournalMode journal = JournalMode::Rollback;
    uint64_t seed = 1;          ///< the same seed and steps give the same run
    std::optional<SimTime> now; ///< where the clock starts; a fixed day when not given and not ticking
    double ticking = 0;         ///< simulated seconds a real second; 0: the clock moves by Advance only
    std::chrono::milliseconds startDelay{0}; ///< until the port opens
    std::string davPrefix = "D";             ///< of the elements of listings; none when empty
    int entries = 0;                         ///< folders in the folder "Many" of a home that is filled
    FileMonitorSwitch fileMonitor;           ///< what is seen of the service that indexes files
    std::filesystem::path files;             ///< the folder that it indexes; "files" in the home when empty
    bool holdLocks = true; ///< the shell's mutex and the service's lock, which one service can hold
};

/// A stand-in for the background service: HTTP, databases, tasks on a simulated clock. All its functions may
/// be called from any thread. What the console reads (files, counters) stands when a call returns, unless a
/// database is locked from outside: then it follows with the next change or Advance.
class DevService {
public:
    explicit DevService(Options options);
    ~DevService(); ///< stops

    /// Loads the home or fills it by the scenario, opens the port. Throws std::runtime_error with a sentence
    /// for the user: port taken, home not writable, unknown scenario.
    void Start();
    /// Closes the port (it stays ours) and the databases. Start then goes on from the files.
    void Stop();
    bool IsRunning() const;

    uint16_t Port() const; ///< known after the first Start
    const std::filesystem::path& Home() const;
    std::filesystem::path DatabaseFile(Database database) const;
    std::filesystem::path SubTaskFile(const std::string& taskId) const;

    /// Lets simulated time pass; tasks run, end, fail and are scheduled again.
    void Advance(std::chrono::milliseconds time);
    SimTime Now() const;

    void SetFault(const HttpFaultSwitch& fault);
    void SetFault(const DatabaseFaultSwitch& fault);
    void SetFault(HttpFault fault, std::chrono::milliseconds time = {}, const std::string& target = {});
    void SetFault(DatabaseFault fault, Database database = Database::Scheduler,
                  std::chrono::milliseconds time = {});
    /// By text as on the command line; false when it is not understood.
    bool SetFault(const std::string& text);
    void ClearFaults();
    WriterStatistics FastWriterStatistics() const;

    /// The last requests (at most 10,000) in the order of their arrival, our own "/dev/" ones left out.
    std::vector<ReceivedRequest> Requests() const;
    void ForgetRequests();
    /// Answers requests whose target begins with `target` by this from now on; an empty answer ends that.
    void SetAnswer(const std::string& target, std::optional<Answer> answer);

    std::optional<std::string> Setting(const std::string& name) const;
    void SetSetting(const std::string& name, const std::string& value);

    std::vector<Task> Tasks() const; ///< without their sub-tasks
    std::optional<Task> FindTask(const std::string& id) const;
    /// Adds tasks, or replaces those of the same identifier, in one transaction a database.
    void PutTasks(std::vector<Task> tasks);
    void PutTask(Task task);
    bool RemoveTask(const std::string& id);
    bool SetTaskState(const std::string& id, TaskState state);
    /// Replaces the task's sub-tasks.
    bool PutSubTasks(const std::string& id, std::vector<SubTask> subTasks);
    bool SetSubTaskState(const std::string& id, int number, SubTaskState state);
    void AddAuditRows(const std::vector<AuditRow>& rows);

    std::vector<VirtualDirectory> VirtualDirectories() const;
    /// In place of those that are mounted; each gets its folder below the home path "drive".
    void SetVirtualDirectories(std::vector<VirtualDirectory> directories);
    /// How logins go from now on; Advance brings those that take their time.
    void SetLogin(const LoginSwitch& how);
    bool SetLogin(const std::string& text); ///< as on the command line; false when it is not understood
    void SetFileMonitor(const FileMonitorSwitch& how);
    void SetWriters(Writers writers);
    /// Where the virtual directories are shown; 0 when nowhere.
    void SetDriveLetter(char16_t letter);

    /// Runs SQL on a database file by a connection of its own, for rows that no task makes. Throws
    /// std::runtime_error with the database's words.
    void Execute(const std::filesystem::path& file, const std::string& sql);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace devservice
