#pragma once

#include <QString>

#include <vector>

/// The column widths that the user gave to the list of a name, in the console's own file. Empty when none are
/// remembered for that many columns.
std::vector<int> ReadColumnWidths(const QString& listName, size_t columns);
void WriteColumnWidths(const QString& listName, const std::vector<int>& widths);
