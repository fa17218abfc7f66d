#include "grid/PropertyModel.h"

#include <QCoreApplication>

namespace {

constexpr qsizetype LongestShown = 1000;

} // namespace

QString PropertyRow::ShownValue() const {
    return unread ? QCoreApplication::translate("PropertyRow", "%1 (not read)").arg(value) : value;
}

QString OneLineText(const QString& value) {
    QString shown = value.left(LongestShown);
    for (QChar& c : shown) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator)
            c = u' ';
    }
    return shown;
}

PropertyModel::PropertyModel(const QString& title, QObject* parent) : QAbstractTableModel(parent) {
    PropertyRow row;
    row.label = title;
    m_rows.push_back(row);
}

void PropertyModel::Add(const PropertyRow& row) {
    beginInsertRows({}, rowCount(), rowCount());
    m_rows.push_back(row);
    endInsertRows();
}

void PropertyModel::SetValue(int row, const QString& value) {
    if (Row(row).value == value)
        return;
    m_rows.at(static_cast<std::size_t>(row)).value = value;
    RowChanged(row);
}

void PropertyModel::SetFlag(int row, bool PropertyRow::*flag, bool value) {
    if (Row(row).*flag == value)
        return;
    m_rows.at(static_cast<std::size_t>(row)).*flag = value;
    RowChanged(row);
}

void PropertyModel::RowChanged(int row) {
    emit dataChanged(index(row, 0), index(row, Columns - 1));
}

int PropertyModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int PropertyModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Columns;
}

QString PropertyModel::Text(const PropertyRow& row, int column) const {
    switch (column) {
    case Label:
        return row.label;
    case Value:
        return row.value;
    case Key:
        return row.key;
    case Type:
        return QString::number(static_cast<int>(row.type));
    default:
        return {};
    }
}

QVariant PropertyModel::data(const QModelIndex& index, int role) const {
    const PropertyRow& row = Row(index.row());
    const bool isTitle = index.row() == 0;
    switch (role) {
    case Qt::DisplayRole:
        return isTitle && index.column() != Label ? QString() : Text(row, index.column());
    case Qt::AccessibleTextRole:
        if (index.column() != Value || isTitle)
            return OneLineText(Text(row, index.column()));
        return OneLineText(row.label) + QStringLiteral(": ") + OneLineText(row.ShownValue());
    case Qt::AccessibleDescriptionRole:
        return row.hint;
    case Qt::ToolTipRole:
        return row.hint.toHtmlEscaped();
    default:
        return {};
    }
}

Qt::ItemFlags PropertyModel::flags(const QModelIndex& index) const {
    if (index.row() == 0)
        return Qt::NoItemFlags;
    const bool editable = index.column() == Value && IsEditable(index.row());
    return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren | (editable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}
