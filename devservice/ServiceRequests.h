#pragma once

#include "devservice/DavTree.h"
#include "devservice/HttpServer.h"
#include "devservice/Profile.h"
#include "devservice/Settings.h"
#include "devservice/SnapshotSets.h"
#include "devservice/SyncFolders.h"
#include "devservice/TaskEngine.h"
#include "devservice/Writers.h"

namespace devservice {

/// Answers the console's requests from the service's parts, which the caller has locked.
class ServiceRequests {
public:
    ServiceRequests(TaskEngine& engine, Settings& settings, Profile& profile, DavTree& tree,
                    const SnapshotSets& snapshots, SyncFolders& syncFolders)
        : m_engine(engine), m_settings(settings), m_profile(profile), m_tree(tree), m_snapshots(snapshots),
          m_syncFolders(syncFolders) {}

    Answer Handle(const ReceivedRequest& request);
    void SetWriters(Writers writers) { m_writers = writers; }

private:
    struct Parts; ///< of a request: decoded path, query and body

    Answer HandleSettings(const ReceivedRequest& request, const Parts& parts);
    Answer HandleSchedule(const Parts& parts);
    Answer Restore(const Parts& parts);
    Answer CreateBackup(bool ofApplications, const std::string& record);
    Answer ChangeBackup(const std::string& body);
    Answer Refused(const std::string& why);
    Answer HandleCache(const Parts& parts);
    Answer HandleProfile(const Parts& parts);
    Answer OfFolder(const Parts& parts) const;
    Answer AddNode(const Parts& parts);
    Answer RemoveNode(const Parts& parts);
    Answer HandleCards(const Parts& parts);
    Answer HandleResources(const std::string& verb, const Parts& parts);
    Answer MoveDirectory(const std::string& name, const std::string& destination);
    Answer Quota() const;

    TaskEngine& m_engine;
    Settings& m_settings;
    Profile& m_profile;
    DavTree& m_tree;
    const SnapshotSets& m_snapshots;
    Writers m_writers = Writers::Usual;
    SyncFolders& m_syncFolders;
};

} // namespace devservice
