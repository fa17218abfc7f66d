#pragma once

#include "plan/TaskCreation.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>

// What is restored of a snapshot, and the record that the service takes of it.

/// What becomes of a file that stands in the way. The number is what the service is told.
enum class RestorePolicy { Overwrite = 0, KeepNewer = 1, Rename = 2, Skip = 3 };
inline constexpr int RestorePolicies = 4;
QString RestorePolicyText(RestorePolicy policy);

struct RestoreDraft {
    QString name = {};
    QString snapshot = {}; ///< its path below "/resources"
    /// Paths below the snapshot without a slash before them; of a backup of applications the keys of writers.
    QStringList components = {};
    QStringList exclusions = {};
    RestorePolicy policy = RestorePolicy::Overwrite;
    bool elsewhere = false; ///< not to where it was
    QString location = {};  ///< where it is restored to then

    bool operator==(const RestoreDraft&) const = default;
};

/// "Restore [COMPONENTS] From [STORAGE]".
QString RestoreName(const QStringList& components, const QString& storage);

/// Why no record is made of the draft; empty: one is. No file system is asked.
QString RestoreRefusal(const RestoreDraft& draft);

/// The fields of a record in its order. Tabs and line feeds of the name are blanks in it.
enum class RestoreField { Name, Snapshot, Components, Exclusions, Policy, Elsewhere, Location };
std::array<QString, 7> FieldsOf(const RestoreDraft& draft);
/// In UTF-8, as "/schedule/restoreapp" takes it.
QByteArray RecordOf(const std::array<QString, 7>& fields);

NewTask TaskOf(const RestoreDraft& draft);

/// Where a file of the snapshot, of this path in it, is written. None where that is not known: at its own
/// place, and no source of the backup has the path's first part as its last one.
std::optional<QString> RestoredTo(const RestoreDraft& draft, const QStringList& sources, const QString& path);

/// Whether the location is a source of the backup, or in one: what is restored there is backed up in turn.
bool IsInSource(const QString& location, const QStringList& sources);
