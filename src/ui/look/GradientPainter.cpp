#include "look/GradientPainter.h"

#include <QColor>
#include <QPainter>

namespace {

int Channel(int from, int to, int step, int steps) {
    return int(from + qint64(to - from) * step / steps);
}

QRgb Between(QRgb from, QRgb to, int step, int steps) {
    return qRgb(Channel(qRed(from), qRed(to), step, steps), Channel(qGreen(from), qGreen(to), step, steps),
                Channel(qBlue(from), qBlue(to), step, steps));
}

void PaintRows(QPainter& painter, const QRect& rect, QRgb from, QRgb to) {
    for (int row = 0; row < rect.height(); ++row)
        painter.fillRect(rect.x(), rect.y() + row, rect.width(), 1,
                         QColor(Between(from, to, row, rect.height())));
}

void PaintColumns(QPainter& painter, const QRect& rect, QRgb from, QRgb to) {
    for (int column = 0; column < rect.width(); ++column)
        painter.fillRect(rect.x() + column, rect.y(), 1, rect.height(),
                         QColor(Between(from, to, column, rect.width())));
}

void PaintGlossy(QPainter& painter, const QRect& rect, QRgb first, QRgb second) {
    const int height = rect.height();
    const int turn = 2 * height / 3;
    const int start = 2 * (height / 3);
    for (int row = 0; row < height; ++row) {
        const int step = (start + row) % height;
        const QRgb colour =
            step < turn ? Between(second, first, step, height) : Between(first, second, step, height);
        painter.fillRect(rect.x(), rect.y() + row, rect.width(), 1, QColor(colour));
    }
}

} // namespace

void PaintGradient(QPainter& painter, const QRect& rect, QRgb first, QRgb second, GradientMode mode) {
    if (rect.isEmpty())
        return;
    painter.save();
    // At fractional scales smoothed lines would not close up.
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QRect left(rect.x(), rect.y(), rect.width() / 2, rect.height());
    const QRect top(rect.x(), rect.y(), rect.width(), rect.height() / 2);
    switch (mode) {
    case GradientMode::Solid:
        painter.fillRect(rect, QColor(first));
        break;
    case GradientMode::Vertical:
        PaintRows(painter, rect, first, second);
        break;
    case GradientMode::Horizontal:
        PaintColumns(painter, rect, first, second);
        break;
    case GradientMode::HorizontalMirror:
        PaintColumns(painter, left, first, second);
        PaintColumns(painter, left.translated(left.width(), 0), second, first);
        break;
    case GradientMode::VerticalMirror:
        PaintRows(painter, top, first, second);
        PaintRows(painter, top.translated(0, top.height()), second, first);
        break;
    case GradientMode::Glossy:
        PaintGlossy(painter, rect, first, second);
        break;
    }
    painter.restore();
}
