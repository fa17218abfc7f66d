#pragma once

#include <QString>

#include <compare>
#include <memory>
#include <unordered_set>
#include <vector>

/// What a cell is sorted by: numbers before texts, texts code unit by code unit.
struct SortKey {
    qint64 number = 0;
    QString text = {};

    friend bool operator<(const SortKey& a, const SortKey& b) {
        return a.number != b.number ? a.number < b.number : a.text < b.text;
    }
};

/// Rows made from records of one kind, which never change: any thread may read them. A cell is written when
/// it is asked for.
class RowBlock {
public:
    virtual ~RowBlock() = default;

    virtual int Count() const = 0;
    /// In the cell markup; empty outside of the columns.
    virtual QString Cell(int row, int column) const = 0;
    virtual SortKey KeyOf(int row, int column) const = 0;
    // The other block holds records of the same kind.
    virtual std::size_t IdHash(int row) const = 0;
    virtual bool HasIdOf(int row, const RowBlock& other, int otherRow) const = 0;
    virtual bool Equals(int row, const RowBlock& other, int otherRow) const = 0;
};

/// A row as it was when it was taken. Keeps its records alive.
struct TakenRow {
    std::shared_ptr<const RowBlock> block;
    int at = 0;
    int place = 0; ///< in the rows that it was taken from

    QString Cell(int column) const { return block->Cell(at, column); }
    std::size_t IdHash() const { return block->IdHash(at); }
    bool HasIdOf(const TakenRow& other) const { return block->HasIdOf(at, *other.block, other.at); }
};

struct RowIdHash {
    std::size_t operator()(const TakenRow& row) const { return row.IdHash(); }
};
struct RowIdEqual {
    bool operator()(const TakenRow& a, const TakenRow& b) const { return a.HasIdOf(b); }
};
using RowIds = std::unordered_set<TakenRow, RowIdHash, RowIdEqual>;

/// The rows of a list in the producer's order: blocks of one kind, one after the other. Cheap to copy.
class RowSet {
public:
    RowSet() = default;
    explicit RowSet(std::shared_ptr<const RowBlock> block) { Append(std::move(block)); }

    void Append(std::shared_ptr<const RowBlock> block);

    int Count() const { return m_ends.empty() ? 0 : m_ends.back(); }

    // Of a row below Count().
    TakenRow At(int row) const;
    QString Cell(int row, int column) const;
    SortKey KeyOf(int row, int column) const;
    std::size_t IdHash(int row) const;
    bool HasIdOf(int row, const RowSet& other, int otherRow) const;
    bool Equals(int row, const RowSet& other, int otherRow) const;

private:
    struct Spot {
        const std::shared_ptr<const RowBlock>& block;
        int at;
    };
    Spot Find(int row) const;

    std::vector<std::shared_ptr<const RowBlock>> m_blocks;
    std::vector<int> m_ends; ///< of each block, in rows
};
