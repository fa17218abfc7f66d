#pragma once

#include "list/CellMarkup.h"

#include <QColor>
#include <QHash>
#include <QIcon>
#include <QRect>

class QPainter;

/// How the list shows the cell that is painted.
struct CellLook {
    QRect rect;
    bool grey = false;   ///< a shaded row, outside of the unshaded column
    bool accent = false; ///< in the accent column
    bool selected = false;
    bool focused = false; ///< the current cell of a list that has the focus
    Qt::Alignment alignment = Qt::AlignLeft;
    QColor highlight;
};

/// Draws cells with the painter's font; nothing outside of the cell's rectangle is touched. UI thread.
class CellPainter {
public:
    void Paint(QPainter& painter, QStringView text, const CellLook& look);

private:
    void PaintIcon(QPainter& painter, int number, const CellLook& look);
    QIcon Icon(int number);

    QHash<int, QIcon> m_icons;
};
