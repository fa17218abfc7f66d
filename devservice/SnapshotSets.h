#pragma once

#include "devservice/DavTree.h"
#include "devservice/TaskEngine.h"

#include <functional>
#include <map>

namespace devservice {

/// The snapshots that backups leave in the tree, and restores from them. A backup of a folder that stands in
/// the service's home copies its files, any other one makes files up. In the same way a restore to the
/// backup's own folders writes to them in the home only; those of a real machine are stood in for by the
/// home's folder "machine".
class SnapshotSets {
public:
    /// One backup in so many is a full one.
    static constexpr int FullEvery = 4;

    SnapshotSets(DavTree& tree, std::filesystem::path home) : m_tree(tree), m_home(std::move(home)) {}

    /// What a sub-task brings about in the world when it ends: the last one of a snapshot backup writes the
    /// snapshot, one of a restore its file. Returns what went wrong.
    std::string CarryOut(const Task& task, const SubTask& subTask, SimTime now);

    /// Writes the next snapshot of the task, if it is of that kind and its storage is mounted.
    void Write(const Task& task, SimTime now);

    /// The restore that a record asks for; none when the record is not in its form to the octet, or its
    /// snapshot is not there. `tasks` are those whose snapshots there are.
    std::optional<Task> RestoreOf(const std::string& record, const TaskMap& tasks, SimTime now) const;

private:
    using Files = std::map<std::string, std::filesystem::path>; ///< by their paths in a snapshot

    std::optional<std::filesystem::path> SetOf(const Task& task) const;
    Files Source(const Task& task, const Files& before, size_t number, SimTime now) const;
    std::filesystem::path OwnPlace(const std::string& folder) const;

    DavTree& m_tree;
    std::filesystem::path m_home;
};

/// The storage of a scenario that has them gets snapshots of its backups, and sets in which something is
/// wrong.
void PopulateSnapshots(const TaskMap& tasks, SnapshotSets& sets, DavTree& tree, SimTime now);

} // namespace devservice
