#pragma once

#include "syncplan/SyncFolders.h"

// What of a sync folder is on this computer. Only what says so leaves the file system alone.

/// Whether the path names its folder wherever the program runs. Asks no file system.
bool IsAbsoluteFolder(const QString& path);

/// Where a new sync folder may stand, below the user's home folder. Makes nothing.
QString ProposedFolder(const QString& name);

/// What is to be said of a folder that stands inside or around another sync folder; empty: nothing. Asks no
/// file system.
QString NestingWarning(const QString& path, const std::vector<SyncFolder>& folders);

/// Makes the folder and those above it that are missing.
bool MakeLocalFolder(const QString& path);

/// Place and remove the folder's shortcuts; they return the folders in which that failed. The desktop, the
/// start menu and the documents have one each.
QStringList PlaceShortcuts(const QString& name, const QString& path);
QStringList RemoveShortcuts(const QString& name);

/// Opens a file or folder as a double click would. Returns why it cannot be opened.
QString OpenLocally(const QString& path);

/// Where a file of the virtual directory, as in "/a/b.txt", is kept locally; empty where that would lead out
/// of the folder. Asks no file system.
QString LocalFile(const SyncFolder& folder, const QString& file);

/// A local file in words: size and time; or that it is not there.
QString LocalFileText(const QString& path);
