#include "plan/BackupMatcher.h"

#include "plan/FileTypes.h"
#include "plan/FolderSelection.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::size_t Number(BackupRule rule) {
    return static_cast<std::size_t>(rule);
}

QSet<QString> InSmallLetters(const QStringList& texts) {
    QSet<QString> small;
    for (const QString& text : texts)
        if (const QString trimmed = text.trimmed(); !trimmed.isEmpty())
            small.insert(trimmed.toLower());
    // A list that is "*" is no list.
    return small.contains(u"*"_s) ? QSet<QString>() : small;
}

QSet<QString> TypesOf(const QString& types) {
    return InSmallLetters(SplitFileTypes(types));
}

bool HasType(const QString& name, const QSet<QString>& types) {
    // An entry may have a dot within, as ".tar.gz".
    for (auto dot = name.indexOf(u'.'); dot >= 0; dot = name.indexOf(u'.', dot + 1))
        if (types.contains(QString::fromRawData(name.constData() + dot, name.size() - dot))) // no copy
            return true;
    return false;
}

} // namespace

BackupMatcher::BackupMatcher(const BackupFilter& filter, const QStringList& exclusions)
    : m_types(TypesOf(filter.types)), m_excludedTypes(TypesOf(filter.excludedTypes)),
      m_excludedFiles(InSmallLetters(filter.excludedFiles.split(u';'))), m_skipSystem(filter.skipSystem),
      m_skipHidden(filter.skipHidden) {
    for (qsizetype i = 0; i < exclusions.size(); ++i)
        if (exclusions[i] != "*"_L1)
            m_exclusions.insert(ComparablePath(exclusions[i]), int(i));
    m_inForce[Number(BackupRule::Types)] = !m_types.isEmpty();
    m_inForce[Number(BackupRule::ExcludedTypes)] = !m_excludedTypes.isEmpty();
    m_inForce[Number(BackupRule::ExcludedFiles)] = !m_excludedFiles.isEmpty();
    m_inForce[Number(BackupRule::System)] = m_skipSystem;
    m_inForce[Number(BackupRule::Hidden)] = m_skipHidden;
    m_inForce[Number(BackupRule::Exclusions)] = !m_exclusions.isEmpty();
}

BackupRules BackupMatcher::RulesAgainst(QStringView name, bool isSystem, bool isHidden) const {
    BackupRules rules;
    const bool byName = !m_types.isEmpty() || !m_excludedTypes.isEmpty() || !m_excludedFiles.isEmpty();
    if (byName) {
        const QString lower = name.toString().toLower();
        rules[Number(BackupRule::Types)] = !m_types.isEmpty() && !HasType(lower, m_types);
        rules[Number(BackupRule::ExcludedTypes)] = HasType(lower, m_excludedTypes);
        rules[Number(BackupRule::ExcludedFiles)] = m_excludedFiles.contains(lower);
    }
    rules[Number(BackupRule::System)] = m_skipSystem && isSystem;
    rules[Number(BackupRule::Hidden)] = m_skipHidden && isHidden;
    return rules;
}

int BackupMatcher::ExclusionAt(QStringView path) const {
    return m_exclusions.isEmpty() ? -1 : m_exclusions.value(ComparablePath(path), -1);
}

bool BackupMatcher::IsExcluded(QStringView path) const {
    if (m_exclusions.isEmpty())
        return false;
    const QString whole = ComparablePath(path);
    for (QStringView above = whole; !above.empty();) {
        if (m_exclusions.contains(above.toString()))
            return true;
        const auto end = std::max(above.lastIndexOf(u'/'), above.lastIndexOf(QDir::separator()));
        // The root is all that is left of "/name".
        above = end == 0 && above.size() > 1 ? above.first(1) : above.first(std::max<qsizetype>(end, 0));
    }
    return false;
}
