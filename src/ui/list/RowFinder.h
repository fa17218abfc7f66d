#pragma once

#include "lanes/PageLoader.h"
#include "list/ListUpdate.h"

#include <QElapsedTimer>

class BrenListModel;
class QTableView;

/// Goes to rows of a list by what their cells begin with; many rows are searched off the window's thread.
class RowFinder {
public:
    /// Both outlive this.
    RowFinder(QTableView& list, const BrenListModel& rows) : m_list(list), m_rows(rows) {}

    /// Without a reader all is searched at once.
    void WorkOn(Reader& reader);
    /// Letters typed on their way to a row: those in quick succession belong together.
    void Type(const QString& letters, std::vector<int> columns);
    /// The next row, or the one before, and round again.
    void Next(int column, const QString& words, bool up);
    void Select(int row);
    /// The displayed rows are others: what is searched in those before is not gone to.
    void OnMoved() { ++m_moves; }

private:
    void Find(RowSearch search);

    QTableView& m_list;
    const BrenListModel& m_rows;
    std::unique_ptr<PageLoader> m_loader;
    QString m_typed;
    QElapsedTimer m_sinceTyped;
    unsigned m_moves = 0;
};
