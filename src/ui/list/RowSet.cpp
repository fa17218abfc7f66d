#include "list/RowSet.h"

#include <algorithm>

void RowSet::Append(std::shared_ptr<const RowBlock> block) {
    if (block->Count() == 0)
        return;
    m_ends.push_back(Count() + block->Count());
    m_blocks.push_back(std::move(block));
}

RowSet::Spot RowSet::Find(int row) const {
    const auto end = std::upper_bound(m_ends.begin(), m_ends.end(), row);
    const auto place = end - m_ends.begin();
    return {m_blocks[std::size_t(place)], place == 0 ? row : row - *(end - 1)};
}

TakenRow RowSet::At(int row) const {
    const Spot spot = Find(row);
    return {spot.block, spot.at, row};
}

QString RowSet::Cell(int row, int column) const {
    const Spot spot = Find(row);
    return spot.block->Cell(spot.at, column);
}

SortKey RowSet::KeyOf(int row, int column) const {
    const Spot spot = Find(row);
    return spot.block->KeyOf(spot.at, column);
}

std::size_t RowSet::IdHash(int row) const {
    const Spot spot = Find(row);
    return spot.block->IdHash(spot.at);
}

bool RowSet::HasIdOf(int row, const RowSet& other, int otherRow) const {
    const Spot spot = Find(row);
    const Spot otherSpot = other.Find(otherRow);
    return spot.block->HasIdOf(spot.at, *otherSpot.block, otherSpot.at);
}

bool RowSet::Equals(int row, const RowSet& other, int otherRow) const {
    const Spot spot = Find(row);
    const Spot otherSpot = other.Find(otherRow);
    return spot.block->Equals(spot.at, *otherSpot.block, otherSpot.at);
}
