#pragma once

#include "service/DavListing.h"
#include "stores/HistoryStore.h"

// What was changed in a sync folder, by whom, and the versions of its files that the service keeps. A stamp
// is a time in whole seconds since the start of 1601, UTC, as a text of digits.

inline constexpr char VersionStoreId[] = "43811DCD-8C5A-4EF9-B903-2EEA9CE88487";

/// Now, as a stamp.
qint64 CurrentStamp();
/// How long ago the stamp was; of 30 days and more, and of the future, when it is. A text that is no number,
/// or of a time beyond the calendar, is returned as it stands.
QString StampText(const QString& stamp, qint64 now);
/// For sorting; the nearest number there is of one that is too long, 0 of what is none.
qint64 StampNumber(const QString& stamp);

/// "Added", "Deleted" or "Modified" of 'a', 'd' or 'm'; of anything else empty.
QString ChangeText(QChar operation);
/// "Add", "Delete" or "Modify".
QString VersionOperationText(QChar operation);

/// A row of the history.
struct FileChange {
    QString file; ///< as in "/Name/a/b.txt"
    QChar operation;
    QString stamp;
    QString updater;
    QString computer;

    friend bool operator==(const FileChange&, const FileChange&) = default;
};

/// None of a row that is about no version or tells no time.
std::optional<FileChange> ChangeOf(const HistoryRecord& record);
/// The changes of those rows that tell one.
std::vector<FileChange> ChangesOf(const std::vector<HistoryRecord>& records);
/// The file's path inside the virtual directory, as in "/a/b.txt"; empty for one of another directory.
QString FileInside(const QString& file, const QString& name);

/// A version of a file. What the service leaves out is empty.
struct FileVersion {
    int number = 0; ///< of its line in the answer, from 1
    QChar operation;
    QString stamp;
    QString base; ///< "0" for a full copy
    QString computer;
    QString updater;
    bool canRevert = false;

    QString BaseText() const;
    /// What the service knows the version by.
    QString Key() const;
    friend bool operator==(const FileVersion&, const FileVersion&) = default;
};

/// The versions that an answer tells, the present one first. That one and deletions are nothing to revert to.
std::vector<FileVersion> VersionsOf(const QByteArray& answer);
/// The version of this key that can be reverted to; null for none.
const FileVersion* FindVersion(const std::vector<FileVersion>& versions, const QString& key);

/// Paths in a version store: empty at the top, or as in "/a/b".
QString ChildPath(const QString& path, const QString& name);
QString ParentPath(const QString& path);

/// A folder of the directory's version store; as FetchDavListing.
std::optional<DavListing> FetchStoredFolder(const ServiceClient& service, const QString& name,
                                            const QString& path, std::stop_token stop = {});
/// The versions of a file, as in "/a/b.txt".
ServiceAnswer RequestVersions(const ServiceClient& service, const QString& name, const QString& file,
                              std::stop_token stop = {});
ServiceAnswer RequestRevert(const ServiceClient& service, const QString& key, std::stop_token stop = {});
