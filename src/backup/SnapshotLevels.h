#pragma once

#include "plan/BackupSets.h"
#include "wizard/CheckTreeModel.h"

#include <QHash>
#include <QSet>

#include <mutex>

/// What was listed of snapshots, for as long as a wizard lives. Any thread.
class KnownLevels {
public:
    std::optional<TreeLevel> Find(const QString& path) const;
    void Keep(const QString& path, const TreeLevel& level);

private:
    mutable std::mutex m_mutex;
    QHash<QString, TreeLevel> m_levels;
};

/// Lists levels below a snapshot's folder: folders first, names in their natural order, those of writers as
/// people know them. What is known already is taken from there, once; a level that is asked for again is
/// listed again.
CheckTreeModel::Lister ListSnapshot(const ServiceClient& service, const QString& snapshot, SetType type,
                                    std::shared_ptr<KnownLevels> known);
