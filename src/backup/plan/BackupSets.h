#pragma once

#include "plan/BackupTask.h"
#include "service/DavListing.h"

#include <array>

// The snapshots of a backup as they stand on its storage: below the target a container for all backups, in it
// a set for each, in that a folder for each snapshot. Paths are relative to "/resources".

inline constexpr QLatin1String BackupContainer{"091306a3-3cb9-4778-b990-6efd84ed4bb5"};

/// Where the set of a backup is.
struct BackupSetPlace {
    QString target = {}; ///< as in "/Archive/Work"
    QString set = {};    ///< the task's identifier without its braces

    QString Container() const { return target + u'/' + BackupContainer; }
    QString Folder() const { return Container() + u'/' + set; }
    /// Of a snapshot, from its parts as they were listed. Empty when one is empty, or would lead elsewhere.
    QString SnapshotPath(const QString& name) const;

    bool operator==(const BackupSetPlace&) const = default;
};

/// Parts that the task does not tell are empty.
BackupSetPlace SetPlaceOf(const QString& taskId, const QString& type, const QString& description);

/// A snapshot, as its folder's name tells it. The older one is the lesser.
struct Snapshot {
    std::array<int, 6> time{}; ///< year to second as written, which need be none that a clock can show
    QString name = {};

    bool IsFull() const { return !name.contains(u'_'); }

    bool operator==(const Snapshot&) const = default;
};
bool operator<(const Snapshot& one, const Snapshot& other);

/// None for a name that does not begin with six numbers joined by "-".
std::optional<Snapshot> SnapshotOf(const QString& name);
/// Those of a listed set, the oldest first.
std::vector<Snapshot> SnapshotsOf(const DavListing& set);

/// As in "2025-03-04 09:05:00".
QString TimeText(const Snapshot& snapshot);
/// As in "Snapshot created at: 2025-03-04 09:05:00 (Full)".
QString CreatedText(const Snapshot& snapshot);

/// Which snapshots cannot be restored any more when some are deleted: the incremental ones behind each of
/// these, up to the next full one. `all` are those of the set, the oldest first.
std::vector<Snapshot> LostWithout(const std::vector<Snapshot>& deleted, const std::vector<Snapshot>& all);
/// As in "4 later snapshots, 3 to 9 Nov, cannot be restored without it."; empty for none. `several` were
/// deleted.
QString LostText(const std::vector<Snapshot>& lost, bool several);

/// What a set is a backup of, by its info file. Unknown where that could not be read.
enum class SetType { Unknown, Folder, Application };
QString SetTypeText(SetType type);
SetType ReadSetType(const ServiceClient& service, const QString& setFolder, std::stop_token stop = {});

/// What a set holds.
struct SetContent {
    bool found = false;                   ///< there is such a set
    std::vector<Snapshot> snapshots = {}; ///< the oldest first
    SetType type = SetType::Unknown;      ///< read where there is a snapshot
    QString failure = {};                 ///< why it could not be listed

    bool operator==(const SetContent&) const = default;
};
/// Lists a set; where that fails, the storage and the container are looked at first, and the set once more.
/// `tell` is told what is being done.
SetContent ReadSet(const ServiceClient& service, const BackupSetPlace& place, const std::stop_token& stop,
                   const std::function<void(const QString& step)>& tell = {});

/// A file as its folder lists it.
struct ListedFile {
    std::optional<qint64> size; ///< octets; none where it is not told
    QByteArray modified;        ///< as it came

    bool operator==(const ListedFile&) const = default;
};
/// None where its folder does not list it.
std::optional<ListedFile> FindListedFile(const ServiceClient& service, const QString& path,
                                         const std::stop_token& stop = {});

/// Deletes a snapshot of a set, which is listed anew before: one that has gone is done with; and nothing is
/// sent when one has come behind `newest`, the last that was known, which could not be restored without it.
ServiceAnswer DeleteSnapshot(const ServiceClient& service, const BackupSetPlace& place,
                             const Snapshot& snapshot, const Snapshot& newest,
                             const std::stop_token& stop = {});
