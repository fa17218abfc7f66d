#pragma once

#include "devservice/DavTree.h"
#include "devservice/Settings.h"
#include "devservice/TaskEngine.h"

namespace devservice {

/// Who changes a file of a sync folder, and where.
struct Computer {
    std::string name;
    std::string user;
};

/// Keeps the folders of the setting "DropFolders" in step: their tasks, the versions of their files in the
/// tree, and the history. Two computers that are not there change files. Names are UTF-8, compared without
/// regard to case; files are named as in "photos/hall.jpg".
class SyncFolders {
public:
    SyncFolders(TaskEngine& engine, Settings& settings, DavTree& tree)
        : m_engine(engine), m_settings(settings), m_tree(tree) {}

    /// The identifier of the folder's task, which is made when missing for a record of that name, and stays
    /// without one until it is deleted.
    std::optional<std::string> TaskOf(const std::string& name);
    /// Synchronises at once; false where there is no such task.
    bool Sync(const std::string& name);

    /// What is told of the versions of a file, by its path in the version store; none when there are none.
    std::optional<std::string> Versions(const std::string& path) const;
    /// Makes an older version the present one; false for a key that is none, or of a deletion.
    bool Revert(const std::string& key);

    /// Lets the other computers do what they have done from then until now.
    void Advance(SimTime since);

    /// Notes a change: 'a', 'd' or 'm'. The file becomes the present one in the tree and in the local folder.
    void Change(const std::string& folder, const std::string& file, char operation, const Computer& computer,
                const std::string& content, SimTime time);

    /// Folders that have been kept in step for a month, for the scenario of a desktop: their local ones are
    /// below `local`.
    void Populate(const std::filesystem::path& local);

private:
    struct Record {
        std::string name;
        std::string path;
    };

    std::vector<Record> Records() const;
    std::optional<Record> Find(const std::string& name) const;
    const Task* TaskNamed(const std::string& name) const;
    std::optional<std::string> Text(const std::string& path) const;
    void ChangeSomething(const Record& record);
    void WriteLocally(const std::string& folder, const std::string& file, char operation,
                      const std::string& content) const;

    TaskEngine& m_engine;
    Settings& m_settings;
    DavTree& m_tree;
    std::optional<SimTime> m_nextChange;
    std::optional<SimTime> m_lastChange;
    unsigned m_changes = 0; ///< so far
};

} // namespace devservice
