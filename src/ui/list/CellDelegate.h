#pragma once

#include "list/CellPainter.h"

#include <QAbstractItemDelegate>

class BrenListModel;

/// How a list colours its cells; -1 stands for no column.
struct ListColours {
    int unshadedColumn = -1;
    int accentColumn = -1;
    bool rowShading = true;
};

/// Paints the cells of a list, every pixel of them: nothing of the toolkit's own highlight shows through.
class CellDelegate : public QAbstractItemDelegate {
    Q_OBJECT

public:
    explicit CellDelegate(const BrenListModel& model, QObject* parent = nullptr);

    ListColours colours;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    const BrenListModel& m_model;
    mutable CellPainter m_painter;
};
