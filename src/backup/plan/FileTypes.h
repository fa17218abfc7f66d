#pragma once

#include <QDate>
#include <QStringList>

/// The kinds of files that a backup by file type begins with; All begins with none.
enum class FileCategory { All, Pictures, Music, Videos, Documents };

/// As in ".bmp", in the order of their rows.
QStringList FileTypesOf(FileCategory category);
/// Of the categories that can be added to a list.
QString FileCategoryName(FileCategory category);

/// The name that is proposed for a backup of the category, made on that day.
QString FileTypeTaskName(FileCategory category, const QString& host, const QDate& today);

/// The extensions of a text, which stand between commas and blanks: each once, ignoring case, as it was
/// written first.
QStringList SplitFileTypes(const QString& text);
/// As a record holds them.
QString JoinFileTypes(const QStringList& types);

/// How the file index may write an extension: in small letters, with its dot and without.
QStringList IndexedForms(const QString& type);

/// The folder that holds the file, in the manner of either system: "C:\" of "C:\a", "/" of "/a". Empty where
/// the path names none.
QStringView FolderOfFile(QStringView path);
/// What stands behind that.
QStringView NameOfFile(QStringView path);
