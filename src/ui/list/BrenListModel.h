#pragma once

#include "list/ListRow.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

/// The rows of a list. Model rows are the displayed ones: filtered, and sorted when a sort is asked for.
/// Every change is told as narrowly as it is: an equal text is none, and a refresh keeps the rows that it
/// finds again by their ids. Never reset after its columns are made.
class BrenListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Role { RowIdRole = Qt::UserRole };

    explicit BrenListModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    /// Returns the new column's number, by which it is known from then on.
    int AddColumn(const QString& title, Qt::Alignment alignment = Qt::AlignLeft);

    /// Replaces all rows; given in the producer's order, with ids that differ from each other.
    void SetRows(std::vector<ListRow> rows);
    void AppendRows(std::vector<ListRow> rows);
    /// False when there is no such row or column. The cell's sort key stays.
    bool SetCellText(int row, int column, const QString& text);

    Qt::Alignment ColumnAlignment(int column) const { return m_columns[size_t(column)].alignment; }

    const ListRow& Row(int row) const { return m_rows[size_t(m_shown[size_t(row)])]; }
    /// Empty outside of the table.
    QStringView CellText(int row, int column) const;
    QString RowId(int row) const;
    /// -1 when no displayed row has the id.
    int RowOf(QStringView id) const;
    /// Filtered-out rows included, in the producer's order.
    const std::vector<ListRow>& AllRows() const { return m_rows; }
    int TotalRows() const { return int(m_rows.size()); }

    /// Without an order: the producer's.
    void SortBy(int column, std::optional<Qt::SortOrder> order);
    int SortColumn() const { return m_sortColumn; }
    std::optional<Qt::SortOrder> SortOrder() const { return m_sortOrder; }

    /// Leaves the rows in which one of `columns` contains the words, ignoring case.
    void SetFilter(const QString& words, const std::vector<int>& columns);
    QString Filter() const { return m_filter; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

signals:
    /// How many rows are displayed, or there are, may have changed.
    void CountsChanged();

private:
    struct Column {
        QString title;
        Qt::Alignment alignment;
    };
    /// Displayed rows, by their place in m_rows.
    using Places = std::vector<int>;

    bool Matches(const ListRow& row) const;
    Places WantedPlaces() const;
    void ShowWanted();
    void RemoveShown(const std::vector<bool>& leaves);
    void Reorder(Places places);
    void InsertShown(const Places& wanted, const std::vector<bool>& shown);
    bool TellChangedRows(const std::vector<ListRow>& old, const Places& oldPlaces);
    void TellChangedCells(int row, const ListRow& old);

    std::vector<Column> m_columns;
    std::vector<ListRow> m_rows; ///< in the producer's order
    Places m_shown;
    int m_sortColumn = -1;
    std::optional<Qt::SortOrder> m_sortOrder;
    QString m_filter;
    std::vector<int> m_filterColumns;
};
