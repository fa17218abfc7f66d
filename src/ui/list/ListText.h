#pragma once

#include "list/ListUpdate.h"

#include <QStringList>

/// Rows of a list and columns of them, to be written as text on any thread.
struct ListExcerpt {
    RowSet rows;
    Places places; ///< of the rows, from top to bottom
    std::vector<int> columns;
};

/// The words of the rows' cells between `separator`, the rows between `lineEnd`.
QString JoinedWords(const ListExcerpt& excerpt, const QString& separator, const QString& lineEnd);

/// The words between tabs, a row a line; tabs and line ends in words become blanks.
QString RowsAsLines(const ListExcerpt& excerpt);

/// Writes the rows below the columns' titles to a file, as CSV in UTF-8 with lines that end in CR LF. Returns
/// what went wrong, for people; empty when nothing did.
QString WriteCsv(const ListExcerpt& excerpt, const QStringList& titles, const QString& file);
