#pragma once

#include "plan/BackupDraft.h"

/// What can be known of an existing backup. An empty text is not known.
struct KnownBackup {
    QString id;
    QString name; ///< with the mark of an encrypted one
    BackupKind kind = BackupKind::Mirrored;
    QString sources; ///< as they stand in the description, with their line feeds
    QString targets;
    QString exclusions;

    bool operator==(const KnownBackup&) const = default;
};

KnownBackup KnownOf(const QString& id, const QString& name, const QString& type, const QString& description);

/// The name of an encrypted backup ends with a mark.
bool IsMarkedEncrypted(const QString& name);

/// What a person makes of it. What has no value is left as it is.
struct BackupChange {
    std::optional<QStringList> sources;
    std::optional<QStringList> targets;
    std::optional<QStringList> exclusions;
    std::optional<QString> types;
    std::optional<QString> excludedTypes;
    std::optional<QString> excludedFiles;
    std::optional<bool> skipSystem;
    std::optional<bool> skipHidden;
    std::optional<BackupSchedule> schedule; ///< date and time must be known
    std::optional<int> fullEvery;
    std::optional<int> keep;

    bool operator==(const BackupChange&) const = default;
    bool IsEmpty() const { return *this == BackupChange(); }
};

/// Why it cannot be sent; empty when it can.
QString ChangeRefusal(const BackupChange& change);

/// The body of "/schedule/changebackup" (docs/service-extensions.md). What is neither known nor changed is
/// empty in it. Not for a cross cloud backup.
QByteArray ChangeRecord(const KnownBackup& known, const BackupChange& change);
