#pragma once

#include "devservice/Changes.h"
#include "devservice/DatabaseKinds.h"
#include "devservice/Sqlite.h"

#include <map>
#include <memory>
#include <set>

namespace devservice {

using TaskMap = std::map<std::string, Task>; ///< by identifier

/// The service's SQLite files: their places, their tables, and the way of tasks into and out of them.
class Databases {
public:
    Databases(std::filesystem::path home, JournalMode journal);

    std::filesystem::path FileOf(Database database) const;
    std::filesystem::path SubTaskFile(const std::string& taskId) const;

    /// Makes folders and files that are missing; throws SqliteError or std::filesystem::filesystem_error.
    void Create();
    void Close();
    TaskMap Load();

    /// Writes what has changed in one short transaction a file and takes it out of `changes`; what cannot be
    /// written now, since the file is withheld or locked, stays there.
    void Write(const TaskMap& tasks, Changes& changes);

    /// Closes our connection to the file and writes nothing to it until it is released.
    void Withhold(const std::filesystem::path& file);
    void Release(const std::filesystem::path& file);

    /// Our connection to the file, opened when it is not.
    Connection& Open(const std::filesystem::path& file);

private:
    template <typename WriteRows>
    bool WriteTo(const std::filesystem::path& file, WriteRows writeRows);
    void WriteTasks(const TaskMap& tasks, Changes& changes);
    void WriteSubTasks(const TaskMap& tasks, Changes& changes);
    void WriteLogs(Changes& changes);
    void LoadSubTasks(Task& task);

    std::filesystem::path m_home;
    JournalMode m_journal;
    std::map<std::filesystem::path, std::unique_ptr<Connection>> m_connections;
    std::set<std::filesystem::path> m_withheld;
};

/// Whether a file of its own can be named after the task.
bool CanNameFile(const std::string& taskId);

} // namespace devservice
