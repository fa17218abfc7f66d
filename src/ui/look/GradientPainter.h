#pragma once

#include <QRect>
#include <QRgb>

class QPainter;

enum class GradientMode : int {
    Solid = 0,
    Vertical = 1,
    Horizontal = 2,
    HorizontalMirror = 3,
    VerticalMirror = 4,
    Glossy = 7,
};

/// Fills `rect` line by line, one logical pixel each, with colours between `first` and `second`; the
/// channels are computed in integers that truncate toward zero. The mirror modes leave the odd last line
/// unpainted. Empty rectangles and unknown modes paint nothing.
void PaintGradient(QPainter& painter, const QRect& rect, QRgb first, QRgb second, GradientMode mode);
