#pragma once

#include <QStringList>

#include <vector>

class BrenListModel;
class ListRow;

/// The words of a row's cells.
QStringList WordsOfRow(const ListRow& row);

/// The words of the rows' cells between tabs, a row a line; tabs and line ends in words become blanks.
QString RowsAsLines(const BrenListModel& model, const std::vector<int>& rows,
                    const std::vector<int>& columns);

/// All displayed rows below the columns' titles, as CSV with lines that end in CR LF.
QString RowsAsCsv(const BrenListModel& model, const std::vector<int>& columns);
