#pragma once

#include "ctl/Command.h"

#include <QJsonArray>
#include <QJsonObject>

/// A null string becomes null, any other a text.
QJsonValue JsonText(const QString& text);

struct TextColumn {
    QLatin1String title;
    QLatin1String key; ///< of the objects
};

/// Writes the objects: as a JSON array where "--json" is given, otherwise as a table of these columns.
CtlExit WriteRows(const Invocation& invocation, const ReadResult& read, const QJsonArray& rows,
                  const std::vector<TextColumn>& columns);

/// The table alone, each line ended by a line feed. Control characters in values become blanks, so that a
/// value neither breaks its line nor commands the terminal.
QString TextTable(const QJsonArray& rows, const std::vector<TextColumn>& columns);
