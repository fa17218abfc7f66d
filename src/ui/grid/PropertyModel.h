#pragma once

#include "service/ServiceClient.h"

#include <QAbstractTableModel>

#include <vector>

/// One row of a property group.
struct PropertyRow {
    QString label;
    QString value;
    QString key;
    ServiceClient::ValueType type{}; ///< 0 in the title's row
    QString hint;                    ///< shown as a tool-tip, plain text
    bool readOnly = false;
    bool unread = false; ///< the value is a default in place of one that could not be read

    /// The value, with a word behind it when it is not known.
    QString ShownValue() const;
};

/// The rows of a property group as a table; row 0 holds the group's title and nothing else.
class PropertyModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Margin, Label, Value, Key, Type, Columns };

    explicit PropertyModel(const QString& title, QObject* parent = nullptr);

    void Add(const PropertyRow& row);
    bool Has(int row) const { return row >= 0 && row < rowCount(); }
    const PropertyRow& Row(int row) const { return m_rows.at(static_cast<std::size_t>(row)); }
    bool IsEditable(int row) const { return row > 0 && Has(row) && !Row(row).readOnly; }

    void SetValue(int row, const QString& value);
    void SetReadOnly(int row, bool readOnly) { SetFlag(row, &PropertyRow::readOnly, readOnly); }
    void SetUnread(int row, bool unread) { SetFlag(row, &PropertyRow::unread, unread); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    QString Text(const PropertyRow& row, int column) const;
    void SetFlag(int row, bool PropertyRow::*flag, bool value);
    void RowChanged(int row);

    std::vector<PropertyRow> m_rows;
};

/// What a row shows of a value: one line of bounded length, control characters as blanks.
QString OneLineText(const QString& value);
