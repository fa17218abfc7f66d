#include "grid/PropertyModel.h"

#include "look/Look.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// What screen readers are given of a text.
QString Spoken(const QString& text) {
    constexpr qsizetype most = 1000;
    return Look::OneLine(QStringView(text).left(most));
}

QString SpokenValue(const PropertyRow& row) {
    const QString mark = MarkText(row.mark);
    return Spoken(row.label) + u": "_s + Spoken(row.value) + (mark.isEmpty() ? QString() : u", "_s + mark);
}

} // namespace

QString MarkText(PropertyMark mark) {
    switch (mark) {
    case PropertyMark::Reading:
        return PropertyModel::tr("Reading...");
    case PropertyMark::NotRead:
        return PropertyModel::tr("not read");
    case PropertyMark::NotSaved:
        return PropertyModel::tr("not saved");
    case PropertyMark::Unknown:
        return PropertyModel::tr("unknown");
    case PropertyMark::None:
        break;
    }
    return {};
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

template <typename Field>
void PropertyModel::Set(int row, Field PropertyRow::*field, const Field& value) {
    PropertyRow& changed = m_rows.at(static_cast<std::size_t>(row));
    if (changed.*field == value)
        return;
    changed.*field = value;
    emit dataChanged(index(row, 0), index(row, Columns - 1));
}

void PropertyModel::SetValue(int row, const QString& value) {
    Set(row, &PropertyRow::value, value);
}

void PropertyModel::SetMark(int row, PropertyMark mark) {
    Set(row, &PropertyRow::mark, mark);
}

void PropertyModel::SetReadOnly(int row, bool readOnly) {
    Set(row, &PropertyRow::readOnly, readOnly);
}

int PropertyModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int PropertyModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Columns;
}

QVariant PropertyModel::data(const QModelIndex& index, int role) const {
    const PropertyRow& row = Row(index.row());
    const bool isValue = index.column() == Value && index.row() > 0;
    switch (role) {
    case Qt::DisplayRole:
        return isValue ? row.value : index.column() == Label ? row.label : QString();
    case Qt::AccessibleTextRole:
        return isValue ? SpokenValue(row) : index.column() == Label ? Spoken(row.label) : QString();
    case Qt::AccessibleDescriptionRole:
        return row.hint;
    case Qt::ToolTipRole:
        return row.hint.toHtmlEscaped();
    default:
        return {};
    }
}

QVariant PropertyModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == Label ? tr("Setting") : tr("Value");
}

Qt::ItemFlags PropertyModel::flags(const QModelIndex& index) const {
    if (index.row() == 0)
        return Qt::NoItemFlags;
    const bool editable = index.column() == Value && IsEditable(index.row());
    return Qt::ItemIsEnabled | Qt::ItemNeverHasChildren | (editable ? Qt::ItemIsEditable : Qt::NoItemFlags);
}
