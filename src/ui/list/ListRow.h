#pragma once

#include "list/RowSet.h"

#include <QString>
#include <QStringList>
#include <QStringView>

/// A row of a list: the producer's id, its cells in the cell markup and, where it is sorted by something
/// else than its words, a sort key a cell. Packed into one string, since lists hold a million of them. Cheap
/// to copy, and safe to make on any thread.
class ListRow {
public:
    ListRow() = default;
    /// `sortKeys` is empty or has one for each cell; an empty key stands for the cell's words.
    ListRow(const QString& id, const QStringList& cells, const QStringList& sortKeys = {});

    QStringView Id() const { return Piece(0); }
    int CellCount() const { return m_packed.isEmpty() ? 0 : m_packed.at(0).unicode(); }
    /// Empty outside of the cells.
    QStringView Cell(int column) const;
    /// Compared code unit by code unit.
    QString SortKey(int column) const;
    /// Cells up to `column` are made when they are missing.
    void SetCell(int column, const QString& text);

    friend bool operator==(const ListRow& a, const ListRow& b) {
        return a.m_packed.constData() == b.m_packed.constData() || a.m_packed == b.m_packed;
    }

private:
    int PieceCount() const { return m_packed.isEmpty() ? 0 : m_packed.at(1).unicode(); }
    qsizetype End(int piece) const;
    QStringView Piece(int piece) const;
    void Pack(QStringView id, const QStringList& cells, const QStringList& sortKeys);

    /// The number of cells, the number of pieces, where each piece ends (two code units each), and the
    /// pieces: id, cells, sort keys.
    QString m_packed;
};

/// A sort key that orders like the number.
QString NumberSortKey(qint64 number);

/// Rows of texts as the rows of a list.
RowSet TextRows(std::vector<ListRow> rows);
/// The same rows with another text in a cell. They came from TextRows.
RowSet WithCell(const RowSet& rows, int row, int column, const QString& text);
