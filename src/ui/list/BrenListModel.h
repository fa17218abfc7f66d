#pragma once

#include "list/ListUpdate.h"

#include <QAbstractTableModel>

#include <optional>
#include <vector>

/// The rows of a list. Model rows are the displayed ones: filtered, and sorted when a sort is asked for.
/// Every change is told as narrowly as it is: an equal text is none, and a refresh keeps the rows that it
/// finds again by their ids. Never reset after its columns are made.
class BrenListModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit BrenListModel(QObject* parent = nullptr) : QAbstractTableModel(parent) {}

    /// Returns the new column's number, by which it is known from then on. `name` is what screen readers call
    /// a column without a title.
    int AddColumn(const QString& title, Qt::Alignment alignment = Qt::AlignLeft, const QString& name = {});

    /// Takes an update that was made from AllRows().
    void Apply(const ListUpdate& update);
    /// The rows there are, and more after them. Nothing is sorted or filtered now.
    void AppendRows(const RowSet& rows);

    Qt::Alignment ColumnAlignment(int column) const { return m_columns[size_t(column)].alignment; }

    /// The displayed row.
    TakenRow RowAt(int row) const { return m_rows.At(m_shown[size_t(row)]); }
    /// Empty outside of the table.
    QString CellText(int row, int column) const;
    /// -1 when no displayed row has the id of this one.
    int FindId(const TakenRow& row) const;
    /// Filtered-out rows included, in the producer's order.
    const RowSet& AllRows() const { return m_rows; }
    int TotalRows() const { return m_rows.Count(); }
    /// Of the displayed rows in AllRows().
    const Places& Displayed() const { return m_shown; }
    const Arrangement& Arranged() const { return m_arrangement; }

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
        QString name;
    };

    QString WordsOfRow(int row) const;
    void Show(const Places& wanted);
    void RemoveShown(const std::vector<bool>& leaves);
    void Reorder(Places places);
    void InsertShown(const Places& wanted, const std::vector<bool>& shown);
    void TellChanged(const ListUpdate& update, const RowSet& old);

    std::vector<Column> m_columns;
    RowSet m_rows;
    Places m_shown;
    Arrangement m_arrangement;
};
