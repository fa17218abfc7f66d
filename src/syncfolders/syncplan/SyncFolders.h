#pragma once

#include "service/CloudFolders.h"

/// A local folder that the service keeps in step with a virtual directory.
struct SyncFolder {
    QString name; ///< of the virtual directory
    QString path; ///< of the local folder

    friend bool operator==(const SyncFolder&, const SyncFolder&) = default;
};

/// The folders of a list's entries in their order, one for a name in any case: where the list names one
/// twice, the later path holds. What has no tab is no record.
std::vector<SyncFolder> SyncFoldersOf(const QStringList& entries);

/// The folder of this name, ignoring case; null for none.
const SyncFolder* FindSyncFolder(const std::vector<SyncFolder>& folders, const QString& name);

/// As cards and shortcuts call it.
QString SyncFolderTitle(const QString& name);

/// Why no folder can be kept in step with this directory at this place; empty: it can.
QString SyncFolderRefusal(const SyncFolder& folder);
/// The same of a name alone.
QString SyncNameRefusal(const QString& name);

/// How adding or disabling a folder went.
struct SyncFolderChange {
    ListChange list;
    QStringList stands;  ///< what was done beside the list when that failed, a sentence each
    QStringList notDone; ///< what was to be done behind the list and was not, a sentence each

    bool IsWhole() const { return list.stored && notDone.isEmpty(); }
    /// What stands and what does not; empty when all went well.
    QString Report() const;
};

/// Makes the local folder, adds it to the list, writes the folder's settings and places the shortcuts, in
/// this order; the folder is made only when nothing else is in the way, and without it nothing is written.
/// Touches local files: not on the UI thread.
SyncFolderChange EnableSyncFolder(const ServiceClient& service, const SyncFolder& folder,
                                  std::stop_token stop = {});

/// Takes the directory's records out of the list and, when that stands, deletes its sync task, its shortcuts
/// and resets its settings. The local folder stays. Touches local files: not on the UI thread.
SyncFolderChange DisableSyncFolder(const ServiceClient& service, const QString& name,
                                   std::stop_token stop = {});

/// What stays and what ends when the folder is disabled, a line each.
QString DisableFacts(const SyncFolder& folder);

/// The identifier of the directory's sync task, which the body holds as it came.
ServiceAnswer RequestSyncTask(const ServiceClient& service, const QString& name, std::stop_token stop = {});
/// Has the directory synchronised at once.
ServiceAnswer RequestSync(const ServiceClient& service, const QString& name, std::stop_token stop = {});
/// What is said after it.
QString SyncRequestText(bool done);
/// Has all files of the directory compared again, which is a form of our own.
ServiceAnswer RequestFullSync(const ServiceClient& service, const QString& name, std::stop_token stop = {});
