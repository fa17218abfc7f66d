#pragma once

#include <QString>
#include <QStringList>

/// What a request cannot carry of a text as it stands. Window and shell say it in the same words, and never
/// repeat a value that may be a secret. A sentence is empty when all is well.

/// What of a text the query of a request does not carry as it stands, as in "\"&\""; empty when it carries
/// all.
QStringList LostInQuery(const QString& text);

/// What of a name cannot stand in a request's own path; empty when it can.
QStringList LostInPath(const QString& name);

/// A sentence about what the unescaped query may not carry of the text as it stands; a single setting is sent
/// all the same.
QString QueryRemark(const QString& text);

/// Why a list, a key, a password or a name in a query is not sent.
QString QueryRefusal(const QString& text);

/// Why the folder of this path is neither listed nor taken; the root can be.
QString ListedPathRefusal(const QString& path);

/// Why the file or folder of this path is neither deleted nor moved.
QString ChangedPathRefusal(const QString& path);

/// Why the file or folder of this path is not deleted: also that a path of one name is a whole storage
/// account.
QString DeletedPathRefusal(const QString& path);

/// Why no folder of this name is made below a path, which may be the root.
QString NewFolderRefusal(const QString& parent, const QString& name);

/// Of a value that goes into a document unescaped: a question, to be answered No unless the person knows
/// better. `what` names the value.
QString DocumentQuestion(const QString& what, const QString& value);

/// Why the setting is not written: its request line would pass 64 KB.
QString LengthRefusal(const QString& name, const QString& value);
