#pragma once

#include <QString>

#include <vector>

class BrenListModel;

/// The words of the rows' cells between tabs, a row a line; tabs and line ends in words become blanks.
QString RowsAsLines(const BrenListModel& model, const std::vector<int>& rows,
                    const std::vector<int>& columns);

/// All displayed rows below the columns' titles, as CSV with lines that end in CR LF.
QString RowsAsCsv(const BrenListModel& model, const std::vector<int>& columns);
