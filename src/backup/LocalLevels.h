#pragma once

#include "plan/FolderSelection.h"
#include "platform/LocalFolders.h"
#include "wizard/CheckTreeModel.h"

#include <chrono>

/// How local folders are read.
struct LocalFolders {
    std::function<std::vector<platform::Volume>()> volumes = platform::Volumes;
    std::function<platform::FolderOutcome(const std::filesystem::path& folder, platform::FolderDetail detail,
                                          const std::function<bool(const platform::FolderEntry&)>& each)>
        read = platform::ReadFolder;
    std::chrono::milliseconds patience = std::chrono::seconds(20); ///< with a drive that does not answer
};

/// Lists the user's own folders and the drives, and below them folder by folder, in the natural order of
/// their names. For `Lane::Apart`: a drive that is gone is waited for. What a record cannot carry is shown
/// and cannot be ticked; a link that leads to where it stands cannot be opened. A level that cannot be listed
/// says why.
CheckTreeModel::Lister ListLocalFolders(const LocalFolders& folders);

/// The path that the keys of a tree stand for.
QString LocalPath(const QStringList& keys);

/// What is chosen by a walk over such a tree.
FolderSelection SelectionOf(const TreeWalk& walk);

/// The first of the folders that is not there any more; empty when all are. A drive that does not answer is
/// given the benefit of the doubt. For `Lane::Apart`.
QString FindGone(const QStringList& folders, const std::stop_token& stop);
