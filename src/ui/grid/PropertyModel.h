#pragma once

#include <QAbstractTableModel>

#include <vector>

enum class PropertyType { Integer, Text, Boolean };

/// What there is to say of a value, in a word beside it.
enum class PropertyMark { None, Reading, NotRead, NotSaved, Unknown };
QString MarkText(PropertyMark mark);

/// One row of a property group.
struct PropertyRow {
    QString label;
    QString value = {};
    QString key = {};
    PropertyType type = PropertyType::Text;
    QString hint = {}; ///< shown as a tool-tip, plain text
    bool readOnly = false;
    PropertyMark mark = PropertyMark::None;
    bool opens = false; ///< its value is chosen elsewhere, in place of an editor
};

/// The rows of a property group as a table; row 0 holds the group's title and nothing else.
class PropertyModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Label, Value, Columns };

    explicit PropertyModel(const QString& title, QObject* parent = nullptr);

    void Add(const PropertyRow& row);
    bool Has(int row) const { return row >= 0 && row < rowCount(); }
    const PropertyRow& Row(int row) const { return m_rows.at(static_cast<std::size_t>(row)); }
    bool IsEditable(int row) const { return row > 0 && Has(row) && !Row(row).readOnly; }

    void SetValue(int row, const QString& value);
    void SetMark(int row, PropertyMark mark);
    void SetReadOnly(int row, bool readOnly);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    template <typename Field>
    void Set(int row, Field PropertyRow::*field, const Field& value);

    std::vector<PropertyRow> m_rows;
};
