#pragma once

#include "stores/SchedulerStore.h"

#include <QStringList>

/// The two lists of backups.
enum class BackupFlavour { Mirrored, Snapshot };

/// Which list shows the task; none when it is no backup, or has completed for good.
std::optional<BackupFlavour> ListedFlavour(const TaskRecord& task);

/// What a backup takes and how. Types are compared without regard to case.
enum class BackupKind { CrossCloud, Application, FileType, Folder, Mirrored };

BackupKind KindOfBackup(const QString& type, const QString& description);
QString BackupKindText(BackupKind kind);

/// What a task's description says: a line each, empty ones left out.
struct BackupDescription {
    QStringList sources; ///< "@" stands for all chosen types of files on the whole machine
    QStringList targets;
    QStringList exclusions; ///< "*" stands for none

    bool operator==(const BackupDescription&) const = default;
};

/// None of it of a cross cloud backup.
BackupDescription DescriptionOf(BackupKind kind, const QString& description);
