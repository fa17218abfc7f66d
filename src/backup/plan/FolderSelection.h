#pragma once

#include <QStringList>

#include <vector>

// Which folders of this computer are taken. Paths are compared as the system does: where drives have letters
// the case of letters means nothing.

/// Whether the path is that of the folder or of something below it.
bool IsAtOrBelow(QStringView path, QStringView folder);

/// The path in the form in which two of the same place are equal.
QString ComparablePath(QStringView path);

/// The name at the end of the path; of a root the root itself, as in "C:" or "/".
QString LastPart(QStringView path);
/// The last parts of the sources, joined by ", ".
QString SelectionName(const QStringList& sources);

/// A folder that was chosen, and those below it that were left out of it.
struct ChosenFolder {
    QString source;
    QStringList exclusions;
};

struct FolderSelection {
    QStringList sources;
    QStringList exclusions;
    QString clash; ///< a folder that was chosen in one place and left out in another one; empty: none
};

/// A folder may be seen in several places of a tree: a drive holds the user's own folders as well. What is
/// chosen twice is taken once.
FolderSelection SelectionOf(const std::vector<ChosenFolder>& chosen);
