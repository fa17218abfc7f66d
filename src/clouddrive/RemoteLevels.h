#pragma once

#include "service/DavListing.h"
#include "wizard/CheckTreeModel.h"

/// What a tree shows of the service's folders.
struct RemoteLevels {
    QString start = {}; ///< what the first level lists; the root when empty
    HiddenEntries hidden = HiddenEntries::LeaveOut;
    bool oneLevel = false;
    bool homeIsRoot = false; ///< the root's folder "Home" is called "/"

    QString PathOf(const QStringList& keys) const;
    /// The names on the way from the first level to a path; none when it is not below the start.
    std::optional<QStringList> KeysOf(const QString& path) const;
};

/// Lists levels of folders in the natural order of their names; keys are names. A level that cannot be listed
/// says why.
CheckTreeModel::Lister ListRemoteFolders(const ServiceClient& service, const RemoteLevels& levels);
