#include "list/BrenListModel.h"

#include "list/CellMarkup.h"
#include "list/RowMatch.h"

#include <algorithm>
#include <numeric>

namespace {

/// More runs than these are gathered at the end of the table first: views pay for each run.
constexpr size_t MostRuns = 32;
/// More changed rows than a screen holds are told at once.
constexpr size_t MostChangedRows = 256;

QString WordsOf(QStringView cell) {
    return CellMarkup::Parse(cell).Words();
}

/// Whether rows have come, gone or changed places.
bool MovesRows(const std::vector<int>& matches, size_t freshCount) {
    if (matches.size() != freshCount)
        return true;
    for (size_t place = 0; place < matches.size(); ++place) {
        if (matches[place] != int(place))
            return true;
    }
    return false;
}

} // namespace

int BrenListModel::AddColumn(const QString& title, Qt::Alignment alignment) {
    const int column = int(m_columns.size());
    beginInsertColumns({}, column, column);
    m_columns.push_back({title, alignment});
    endInsertColumns();
    return column;
}

void BrenListModel::SetRows(std::vector<ListRow> rows) {
    const Places matches = MatchRows(m_rows, rows);
    std::vector<bool> leaves(m_shown.size());
    for (size_t row = 0; row < m_shown.size(); ++row)
        leaves[row] = matches[size_t(m_shown[row])] < 0;
    RemoveShown(leaves);

    const Places oldPlaces = m_shown;
    for (int& place : m_shown)
        place = matches[size_t(place)];
    m_rows.swap(rows);
    if (TellChangedRows(rows, oldPlaces) || MovesRows(matches, m_rows.size()) || !m_filter.isEmpty())
        ShowWanted();
    emit CountsChanged();
}

void BrenListModel::AppendRows(std::vector<ListRow> rows) {
    if (rows.empty())
        return;
    const size_t first = m_rows.size();
    m_rows.insert(m_rows.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
    if (m_sortOrder || !m_filter.isEmpty()) {
        ShowWanted();
    } else {
        const size_t shown = m_shown.size();
        beginInsertRows({}, int(shown), int(shown + rows.size()) - 1);
        m_shown.resize(shown + rows.size());
        std::iota(m_shown.begin() + std::ptrdiff_t(shown), m_shown.end(), int(first));
        endInsertRows();
    }
    emit CountsChanged();
}

bool BrenListModel::SetCellText(int row, int column, const QString& text) {
    if (row < 0 || row >= rowCount() || column < 0 || column >= columnCount())
        return false;
    if (CellText(row, column) == text)
        return true;
    m_rows[size_t(m_shown[size_t(row)])].SetCell(column, text);
    const QModelIndex cell = index(row, column);
    emit dataChanged(cell, cell);
    return true;
}

QStringView BrenListModel::CellText(int row, int column) const {
    return row >= 0 && row < rowCount() ? Row(row).Cell(column) : QStringView();
}

QString BrenListModel::RowId(int row) const {
    return row >= 0 && row < rowCount() ? Row(row).Id().toString() : QString();
}

int BrenListModel::RowOf(QStringView id) const {
    const auto found = std::find_if(m_shown.begin(), m_shown.end(),
                                    [&](int place) { return m_rows[size_t(place)].Id() == id; });
    return found == m_shown.end() ? -1 : int(found - m_shown.begin());
}

void BrenListModel::SortBy(int column, std::optional<Qt::SortOrder> order) {
    m_sortColumn = order ? column : -1;
    m_sortOrder = order;
    ShowWanted();
}

void BrenListModel::SetFilter(const QString& words, const std::vector<int>& columns) {
    if (words == m_filter && columns == m_filterColumns)
        return;
    m_filter = words;
    m_filterColumns = columns;
    ShowWanted();
    emit CountsChanged();
}

int BrenListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_shown.size());
}

int BrenListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_columns.size());
}

QVariant BrenListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QStringView text = CellText(index.row(), index.column());
    switch (role) {
    case Qt::DisplayRole:
        return WordsOf(text);
    case Qt::AccessibleDescriptionRole:
        return CellMarkup::Parse(text).kind == CellKind::Struck ? tr("struck out") : QString();
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(m_columns[size_t(index.column())].alignment | Qt::AlignVCenter);
    case RowIdRole:
        return RowId(index.row());
    default:
        return {};
    }
}

QVariant BrenListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    const Column& column = m_columns[size_t(section)];
    if (role == Qt::DisplayRole)
        return column.title;
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(column.alignment | Qt::AlignVCenter);
    return {};
}

bool BrenListModel::Matches(const ListRow& row) const {
    return std::any_of(m_filterColumns.begin(), m_filterColumns.end(), [&](int column) {
        const QStringView cell = row.Cell(column);
        return cell.startsWith(u'#') ? WordsOf(cell).contains(m_filter, Qt::CaseInsensitive)
                                     : cell.contains(m_filter, Qt::CaseInsensitive);
    });
}

BrenListModel::Places BrenListModel::WantedPlaces() const {
    Places places(m_rows.size());
    std::iota(places.begin(), places.end(), 0);
    if (!m_filter.isEmpty())
        std::erase_if(places, [this](int place) { return !Matches(m_rows[size_t(place)]); });
    if (!m_sortOrder)
        return places;
    std::vector<QString> keys(m_rows.size());
    for (const int place : places)
        keys[size_t(place)] = m_rows[size_t(place)].SortKey(m_sortColumn);
    const bool descending = *m_sortOrder == Qt::DescendingOrder;
    std::stable_sort(places.begin(), places.end(), [&](int a, int b) {
        return descending ? keys[size_t(b)] < keys[size_t(a)] : keys[size_t(a)] < keys[size_t(b)];
    });
    return places;
}

void BrenListModel::ShowWanted() {
    const Places wanted = WantedPlaces();
    std::vector<bool> stays(m_rows.size());
    for (const int place : wanted)
        stays[size_t(place)] = true;
    std::vector<bool> leaves(m_shown.size());
    for (size_t row = 0; row < m_shown.size(); ++row)
        leaves[row] = !stays[size_t(m_shown[row])];
    RemoveShown(leaves);

    std::vector<bool> shown(m_rows.size());
    for (const int place : m_shown)
        shown[size_t(place)] = true;
    Places kept;
    std::copy_if(wanted.begin(), wanted.end(), std::back_inserter(kept),
                 [&](int place) { return shown[size_t(place)]; });
    if (kept != m_shown)
        Reorder(std::move(kept));
    InsertShown(wanted, shown);
}

void BrenListModel::RemoveShown(const std::vector<bool>& leaves) {
    std::vector<NumberRun> runs = RunsOf(leaves);
    if (runs.size() > MostRuns) {
        Places staying;
        Places leaving;
        for (size_t row = 0; row < m_shown.size(); ++row) {
            Places& side = leaves[row] ? leaving : staying;
            side.push_back(m_shown[row]);
        }
        runs = {{int(staying.size()), int(m_shown.size()) - 1}};
        staying.insert(staying.end(), leaving.begin(), leaving.end());
        Reorder(std::move(staying));
    }
    for (; !runs.empty(); runs.pop_back()) {
        const NumberRun last = runs.back();
        beginRemoveRows({}, last.first, last.last);
        m_shown.erase(m_shown.begin() + last.first, m_shown.begin() + last.last + 1);
        endRemoveRows();
    }
}

void BrenListModel::InsertShown(const Places& wanted, const std::vector<bool>& shown) {
    std::vector<bool> enters(wanted.size());
    for (size_t row = 0; row < wanted.size(); ++row)
        enters[row] = !shown[size_t(wanted[row])];
    const std::vector<NumberRun> runs = RunsOf(enters);
    if (runs.size() > MostRuns) {
        beginInsertRows({}, rowCount(), int(wanted.size()) - 1);
        for (size_t row = 0; row < wanted.size(); ++row) {
            if (enters[row])
                m_shown.push_back(wanted[row]);
        }
        endInsertRows();
        Reorder(wanted);
        return;
    }
    for (const NumberRun& run : runs) {
        beginInsertRows({}, run.first, run.last);
        m_shown.insert(m_shown.begin() + run.first, wanted.begin() + run.first,
                       wanted.begin() + run.last + 1);
        endInsertRows();
    }
}

void BrenListModel::Reorder(Places places) {
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    std::vector<int> rows(m_rows.size(), -1);
    for (size_t row = 0; row < places.size(); ++row)
        rows[size_t(places[row])] = int(row);
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& cell : from)
        to.append(index(rows[size_t(m_shown[size_t(cell.row())])], cell.column()));
    m_shown = std::move(places);
    changePersistentIndexList(from, to);
    emit layoutChanged({}, VerticalSortHint);
}

bool BrenListModel::TellChangedRows(const std::vector<ListRow>& old, const Places& oldPlaces) {
    Places changed;
    for (int row = 0; row < rowCount(); ++row) {
        if (!(Row(row) == old[size_t(oldPlaces[size_t(row)])]))
            changed.push_back(row);
    }
    if (changed.size() > MostChangedRows) {
        emit dataChanged(index(changed.front(), 0), index(changed.back(), columnCount() - 1));
        return true;
    }
    for (const int row : changed)
        TellChangedCells(row, old[size_t(oldPlaces[size_t(row)])]);
    return !changed.empty();
}

void BrenListModel::TellChangedCells(int row, const ListRow& old) {
    for (int column = 0; column < columnCount(); ++column) {
        if (CellText(row, column) != old.Cell(column))
            emit dataChanged(index(row, column), index(row, column));
    }
}
