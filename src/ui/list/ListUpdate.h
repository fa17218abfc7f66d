#pragma once

#include "list/RowSet.h"

#include <QList>
#include <QStringList>

#include <optional>
#include <stop_token>
#include <vector>

/// So many rows are sorted, searched and written within a few milliseconds.
inline constexpr int MostRowsAtOnce = 5000;

/// Places of rows in the producer's order.
using Places = std::vector<int>;

/// Which rows a list displays, and in which order.
struct Arrangement {
    QString words;            ///< displayed are rows with them in one of the columns; empty: all
    std::vector<int> columns; ///< that are searched
    QStringList hidden;       ///< rows with one of these cells in `hidingColumn` are not displayed
    int hidingColumn = -1;
    int sortColumn = -1;
    std::optional<Qt::SortOrder> order; ///< none: the producer's

    bool IsPlain() const { return words.isEmpty() && hidden.isEmpty() && !order; }
    friend bool operator==(const Arrangement&, const Arrangement&) = default;
};

/// All that takes long on the way of a list from its rows to other ones or another arrangement.
struct ListUpdate {
    struct ChangedRow {
        int old;
        int fresh;
    };

    RowSet rows;
    Arrangement arrangement;
    Places matches; ///< for each old row the place of the new one with its id, or -1
    Places places;  ///< of the rows to be displayed, from top to bottom
    std::vector<ChangedRow> changed;
};

/// On any thread. Throws when it is told to stop.
ListUpdate MakeUpdate(const RowSet& old, const RowSet& rows, const Arrangement& arrangement,
                      const std::stop_token& stop = {});

/// Whether both hold equal rows in the same order. Throws when it is told to stop.
bool AreEqual(const RowSet& a, const RowSet& b, const std::stop_token& stop = {});

/// What is looked for from row to row.
struct RowSearch {
    std::vector<int> columns;
    QString start; ///< of a cell's words, in any case
    int from = 0;  ///< the displayed row to begin with
    bool up = false;
};

/// The first displayed row that has it, round again behind the last one; -1 when none does. Throws when it is
/// told to stop.
int FindRow(const RowSet& rows, const Places& displayed, const RowSearch& search,
            const std::stop_token& stop = {});

/// A run of neighbouring numbers, both ends included.
struct NumberRun {
    int first;
    int last;
};

/// The runs of the places that are true, in order.
std::vector<NumberRun> RunsOf(const std::vector<bool>& places);
