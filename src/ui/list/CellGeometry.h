#pragma once

#include <QRect>

/// Where the parts of a cell lie, in logical pixels, from the cell's rectangle.
namespace CellGeometry {

constexpr int IconSize = 16;

/// The square of an icon, centred; it may reach out of a cell that is smaller.
constexpr QRect Icon(const QRect& cell) {
    return {cell.x() + (cell.width() - IconSize) / 2, cell.y() + (cell.height() - IconSize) / 2, IconSize,
            IconSize};
}

/// The frame of a progress bar, and a swatch. Empty in a cell that is too small for one.
constexpr QRect Bar(const QRect& cell) {
    return {cell.x() + 4, cell.y() + 2, cell.width() - 8, cell.height() - 4};
}

/// The part of `bar` that is filled. `maximum` is not 0.
constexpr QRect Filled(const QRect& bar, quint32 position, quint32 maximum) {
    return {bar.x(), bar.y(), int(double(bar.width()) * position / maximum), bar.height()};
}

constexpr QRect Text(const QRect& cell) {
    return cell.adjusted(8, 0, -6, 0);
}

constexpr QRect StruckText(const QRect& cell) {
    return cell.adjusted(4, 0, 0, 0);
}

} // namespace CellGeometry
