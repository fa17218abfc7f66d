#include "list/RowFinder.h"

#include "list/BrenListModel.h"

#include <QApplication>
#include <QTableView>

#include <algorithm>

void RowFinder::WorkOn(Reader& reader) {
    m_loader = std::make_unique<PageLoader>(reader, m_list);
}

void RowFinder::Type(const QString& letters, std::vector<int> columns) {
    if (m_rows.rowCount() == 0 || letters.isEmpty())
        return;
    if (!m_sinceTyped.isValid() || m_sinceTyped.hasExpired(QApplication::keyboardInputInterval()))
        m_typed.clear();
    m_sinceTyped.start();
    m_typed += letters;
    const bool sameAgain = m_typed.count(m_typed.front()) == m_typed.size();
    const QModelIndex current = m_list.currentIndex();
    const int from = std::max(current.row(), 0) + (sameAgain && current.isValid() ? 1 : 0);
    Find({std::move(columns), sameAgain ? m_typed.left(1) : m_typed, from});
}

void RowFinder::Next(int column, const QString& words, bool up) {
    const int rows = m_rows.rowCount();
    const int current = m_list.currentIndex().isValid() ? m_list.currentIndex().row() : up ? rows : -1;
    if (rows > 0)
        Find({{column}, words, up ? current - 1 + rows : current + 1, up});
}

void RowFinder::Find(RowSearch search) {
    const auto find = [all = m_rows.AllRows(), displayed = m_rows.Displayed(), search = std::move(search)](
                          const std::stop_token& stop) { return FindRow(all, displayed, search, stop); };
    if (!m_loader || m_rows.rowCount() <= MostRowsAtOnce)
        return Select(find({}));
    m_loader->Load(Lane::Computing, find, [this, moves = m_moves](const Loaded<int>& row) {
        if (row && moves == m_moves)
            Select(*row);
    });
}

void RowFinder::Select(int row) {
    if (row >= 0)
        m_list.setCurrentIndex(m_rows.index(row, std::max(m_list.currentIndex().column(), 0)));
}
