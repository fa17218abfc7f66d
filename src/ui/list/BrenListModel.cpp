#include "list/BrenListModel.h"

#include "list/CellMarkup.h"

#include <algorithm>
#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

/// More runs than these are gathered at the end of the table first: views pay for each run.
constexpr size_t MostRuns = 32;
/// More changed rows than a screen holds are told at once.
constexpr size_t MostChangedRows = 256;

bool HasManyRuns(const std::vector<bool>& places) {
    size_t runs = 0;
    bool before = false;
    for (size_t place = 0; place < places.size() && runs <= MostRuns; ++place) {
        runs += places[place] && !before;
        before = places[place];
    }
    return runs > MostRuns;
}

bool StaysInPlace(const ListUpdate& update) {
    const Places& matches = update.matches;
    for (size_t place = 0; place < matches.size(); ++place) {
        if (matches[place] != int(place))
            return false;
    }
    return true;
}

} // namespace

int BrenListModel::AddColumn(const QString& title, Qt::Alignment alignment, const QString& name) {
    const int column = int(m_columns.size());
    beginInsertColumns({}, column, column);
    m_columns.push_back({title, alignment, name});
    endInsertColumns();
    return column;
}

void BrenListModel::Apply(const ListUpdate& update) {
    if (!StaysInPlace(update)) {
        std::vector<bool> leaves(m_shown.size());
        for (size_t row = 0; row < m_shown.size(); ++row)
            leaves[row] = update.matches[size_t(m_shown[row])] < 0;
        RemoveShown(leaves);
        for (int& place : m_shown)
            place = update.matches[size_t(place)];
    }
    const RowSet old = std::exchange(m_rows, update.rows);
    m_arrangement = update.arrangement;
    TellChanged(update, old);
    if (m_shown != update.places)
        Show(update.places);
    emit CountsChanged();
}

void BrenListModel::AppendRows(const RowSet& rows) {
    const int first = m_rows.Count();
    if (rows.Count() == first)
        return;
    beginInsertRows({}, first, rows.Count() - 1);
    m_rows = rows;
    m_shown.resize(size_t(rows.Count()));
    std::iota(m_shown.begin() + first, m_shown.end(), first);
    endInsertRows();
    emit CountsChanged();
}

QString BrenListModel::CellText(int row, int column) const {
    return row >= 0 && row < rowCount() ? m_rows.Cell(m_shown[size_t(row)], column) : QString();
}

int BrenListModel::FindId(const TakenRow& row) const {
    const auto found = std::find_if(m_shown.begin(), m_shown.end(),
                                    [&](int place) { return m_rows.At(place).HasIdOf(row); });
    return found == m_shown.end() ? -1 : int(found - m_shown.begin());
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
    switch (role) {
    case Qt::DisplayRole:
        return WordsOfCell(CellText(index.row(), index.column()));
    case Qt::AccessibleDescriptionRole: {
        const QString text = CellText(index.row(), index.column());
        return CellMarkup::Parse(text).kind == CellKind::Struck ? tr("struck out") : QString();
    }
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(m_columns[size_t(index.column())].alignment | Qt::AlignVCenter);
    default:
        return {};
    }
}

/// Rows have no header that is seen: what stands there is heard as the row's name.
QVariant BrenListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole && section >= 0 && section < rowCount() ? WordsOfRow(section)
                                                                               : QVariant();
    if (section < 0 || section >= columnCount())
        return {};
    const Column& column = m_columns[size_t(section)];
    if (role == Qt::DisplayRole)
        return column.title;
    if (role == Qt::AccessibleTextRole)
        return column.title.isEmpty() ? column.name : column.title;
    if (role == Qt::TextAlignmentRole)
        return QVariant::fromValue(column.alignment | Qt::AlignVCenter);
    return {};
}

QString BrenListModel::WordsOfRow(int row) const {
    QStringList words;
    for (int column = 0; column < columnCount(); ++column) {
        const QString cell = WordsOfCell(CellText(row, column));
        if (!cell.isEmpty() && !m_columns[size_t(column)].title.isEmpty())
            words.append(cell);
    }
    return words.join(u", "_s);
}

void BrenListModel::Show(const Places& wanted) {
    const size_t all = size_t(m_rows.Count());
    if (wanted.size() == all && m_shown.size() == all)
        return Reorder(wanted);
    std::vector<bool> stays(size_t(m_rows.Count()));
    for (const int place : wanted)
        stays[size_t(place)] = true;
    std::vector<bool> leaves(m_shown.size());
    for (size_t row = 0; row < m_shown.size(); ++row)
        leaves[row] = !stays[size_t(m_shown[row])];
    RemoveShown(leaves);

    std::vector<bool> shown(size_t(m_rows.Count()));
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
    std::vector<NumberRun> runs;
    if (!HasManyRuns(leaves)) {
        runs = RunsOf(leaves);
    } else {
        Places staying;
        Places leaving;
        staying.reserve(m_shown.size());
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
    if (HasManyRuns(enters)) {
        beginInsertRows({}, rowCount(), int(wanted.size()) - 1);
        for (size_t row = 0; row < wanted.size(); ++row) {
            if (enters[row])
                m_shown.push_back(wanted[row]);
        }
        endInsertRows();
        Reorder(wanted);
        return;
    }
    for (const NumberRun& run : RunsOf(enters)) {
        beginInsertRows({}, run.first, run.last);
        m_shown.insert(m_shown.begin() + run.first, wanted.begin() + run.first,
                       wanted.begin() + run.last + 1);
        endInsertRows();
    }
}

void BrenListModel::Reorder(Places places) {
    emit layoutAboutToBeChanged({}, VerticalSortHint);
    std::vector<int> rows(size_t(m_rows.Count()), -1);
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

void BrenListModel::TellChanged(const ListUpdate& update, const RowSet& old) {
    if (update.changed.empty() || m_shown.empty())
        return;
    if (update.changed.size() > MostChangedRows) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
        return;
    }
    QHash<int, int> changed;
    for (const ListUpdate::ChangedRow& row : update.changed)
        changed.insert(row.fresh, row.old);
    for (int row = 0; row < rowCount(); ++row) {
        const int place = m_shown[size_t(row)];
        const auto found = changed.constFind(place);
        if (found == changed.constEnd())
            continue;
        for (int column = 0; column < columnCount(); ++column) {
            if (m_rows.Cell(place, column) != old.Cell(*found, column))
                emit dataChanged(index(row, column), index(row, column));
        }
    }
}
