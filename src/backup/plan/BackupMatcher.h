#pragma once

#include "plan/BackupDraft.h"

#include <QHash>
#include <QSet>

#include <bitset>

/// What may leave a file out of a backup.
enum class BackupRule { Types, ExcludedTypes, ExcludedFiles, System, Hidden, Exclusions };
inline constexpr std::size_t BackupRuleCount = 6;
/// By the numbers of the rules.
using BackupRules = std::bitset<BackupRuleCount>;

/// Decides what filter and exclusions leave of a backup's files: the one place that does, for whatever counts
/// or lists them. Extensions and names are compared ignoring case, an extension from its dot on.
class BackupMatcher {
public:
    BackupMatcher(const BackupFilter& filter, const QStringList& exclusions);

    /// The rules that leave the file out, each by itself: none takes it. Its folder is judged apart.
    BackupRules RulesAgainst(QStringView name, bool isSystem, bool isHidden) const;
    /// What of a filter is in force at all.
    BackupRules RulesInForce() const { return m_inForce; }

    /// The exclusion that is this very file or folder, by its number; -1: none.
    int ExclusionAt(QStringView path) const;
    /// Whether the path is an exclusion or stands below one.
    bool IsExcluded(QStringView path) const;

private:
    QSet<QString> m_types; ///< empty: all
    QSet<QString> m_excludedTypes;
    QSet<QString> m_excludedFiles;
    bool m_skipSystem;
    bool m_skipHidden;
    QHash<QString, int> m_exclusions; ///< by comparable path
    BackupRules m_inForce;
};
