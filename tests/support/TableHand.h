#pragma once

#include "list/BrenListCtrl.h"

#include <QTest>

/// What a user sees of the table on a page and does to it.
class TableHand {
public:
    explicit TableHand(const QWidget& page) : m_list(page.findChild<CBrenListCtrl*>()) {}

    CBrenListCtrl* operator->() const { return m_list; }

    QStringList Cells(int row) const {
        QStringList cells;
        for (int column = 0; column < m_list->Rows().columnCount(); ++column)
            cells.append(m_list->Rows().CellText(row, column));
        return cells;
    }
    QStringList Column(int column) const {
        QStringList cells;
        for (int row = 0; row < m_list->Rows().rowCount(); ++row)
            cells.append(m_list->Rows().CellText(row, column));
        return cells;
    }

    /// What stands in a column of the selected rows.
    QStringList Selected(int column) const {
        QStringList cells;
        for (const TakenRow& row : m_list->SelectedRows())
            cells.append(row.Cell(column));
        return cells;
    }

    /// The page hears of a click when the posted events are next delivered.
    void Click(int row, int column, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, modifiers, Centre(row, column));
    }
    /// The events of a window system: the second press is the double click.
    void DoubleClick(int row, int column) const {
        Click(row, column);
        QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, {}, Centre(row, column));
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, Centre(row, column));
    }
    void Select(const QList<int>& rows, int column) const {
        for (const int row : rows)
            Click(row, column, row == rows.front() ? Qt::NoModifier : Qt::ControlModifier);
        QCoreApplication::sendPostedEvents();
    }

private:
    QPoint Centre(int row, int column) const {
        return m_list->visualRect(m_list->Rows().index(row, column)).center();
    }

    CBrenListCtrl* m_list;
};
