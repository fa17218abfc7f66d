#include "plan/FolderSelection.h"

#include <QDir>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool HasDriveLetters() {
    return QDir::separator() == '\\'_L1;
}

bool IsSeparator(QChar c) {
    return c == u'/' || c == QDir::separator();
}

QStringView WithoutEnd(QStringView path) {
    while (path.size() > 1 && IsSeparator(path.back()))
        path.chop(1);
    return path;
}

/// Of comparable paths.
bool IsWithin(const QString& path, const QString& folder) {
    return path.startsWith(folder) &&
           (path.size() == folder.size() || IsSeparator(folder.back()) || IsSeparator(path[folder.size()]));
}

/// A chosen folder in comparable paths.
struct Compared {
    explicit Compared(const ChosenFolder& chosen) : source(ComparablePath(chosen.source)) {
        exclusions.reserve(chosen.exclusions.size());
        for (const QString& exclusion : chosen.exclusions)
            exclusions.append(ComparablePath(exclusion));
    }

    bool Takes(const QString& path) const { return IsWithin(path, source) && !LeavesOut(path); }
    bool LeavesOut(const QString& path) const {
        return std::any_of(exclusions.begin(), exclusions.end(),
                           [&path](const QString& exclusion) { return IsWithin(path, exclusion); });
    }

    QString source;
    QStringList exclusions;
};

/// What one of them leaves out and the other takes.
QString ClashOf(const ChosenFolder& chosen, const Compared& one, const Compared& other) {
    for (qsizetype i = 0; i < one.exclusions.size(); ++i)
        if (other.Takes(one.exclusions[i]) || IsWithin(other.source, one.exclusions[i]))
            return chosen.exclusions[i];
    return {};
}

} // namespace

QString ComparablePath(QStringView path) {
    QString comparable = WithoutEnd(path).toString();
    if (HasDriveLetters())
        comparable = comparable.replace(u'/', u'\\').toLower();
    return comparable;
}

bool IsAtOrBelow(QStringView path, QStringView folder) {
    return !folder.empty() && IsWithin(ComparablePath(path), ComparablePath(folder));
}

QString LastPart(QStringView path) {
    path = WithoutEnd(path);
    const auto last = std::find_if(path.rbegin(), path.rend(), IsSeparator);
    const qsizetype size = last - path.rbegin();
    return size == 0 ? path.toString() : path.last(size).toString();
}

QString SelectionName(const QStringList& sources) {
    QStringList parts;
    parts.reserve(sources.size());
    for (const QString& source : sources)
        parts.append(LastPart(source));
    return parts.join(", "_L1);
}

FolderSelection SelectionOf(const std::vector<ChosenFolder>& chosen) {
    const std::vector<Compared> compared(chosen.begin(), chosen.end());
    FolderSelection selection;
    for (std::size_t i = 0; i < chosen.size(); ++i) {
        bool isTaken = false;
        for (std::size_t k = 0; k < chosen.size(); ++k) {
            if (i == k)
                continue;
            if (selection.clash.isEmpty())
                selection.clash = ClashOf(chosen[i], compared[i], compared[k]);
            const bool isTwin = compared[i].source == compared[k].source;
            isTaken = isTaken || (isTwin ? k < i : IsWithin(compared[i].source, compared[k].source));
        }
        if (!isTaken)
            selection.sources.append(chosen[i].source);
        selection.exclusions += chosen[i].exclusions;
    }
    selection.exclusions.removeDuplicates();
    return selection;
}
