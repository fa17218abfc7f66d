#pragma once

#include "list/RowSet.h"

#include <QList>
#include <QString>

#include <optional>
#include <stop_token>
#include <vector>

/// Places of rows in the producer's order.
using Places = std::vector<int>;

/// Which rows a list displays, and in which order.
struct Arrangement {
    QString words;            ///< displayed are rows with them in one of the columns; empty: all
    std::vector<int> columns; ///< that are searched
    int sortColumn = -1;
    std::optional<Qt::SortOrder> order; ///< none: the producer's

    bool IsPlain() const { return words.isEmpty() && !order; }
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

/// The first displayed row from `from` on, and round again, one of whose cells starts with the text, ignoring
/// case; -1 when none does. Throws when it is told to stop.
int FindRow(const RowSet& rows, const Places& displayed, const std::vector<int>& columns,
            const QString& start, int from, const std::stop_token& stop = {});

/// A run of neighbouring numbers, both ends included.
struct NumberRun {
    int first;
    int last;
};

/// The runs of the places that are true, in order.
std::vector<NumberRun> RunsOf(const std::vector<bool>& places);
