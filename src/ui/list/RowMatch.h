#pragma once

#include "list/ListRow.h"

#include <vector>

/// For each old row the place of the new row with its id, or -1. Of rows that share an id, those at the same
/// place from the front or the back belong together.
std::vector<int> MatchRows(const std::vector<ListRow>& old, const std::vector<ListRow>& fresh);

/// A run of neighbouring numbers, both ends included.
struct NumberRun {
    int first;
    int last;
};

/// The runs of the places that are true, in order.
std::vector<NumberRun> RunsOf(const std::vector<bool>& places);
