#include "list/CellDelegate.h"

#include "list/BrenListModel.h"
#include "list/CellGeometry.h"

#include <QPainter>

namespace {

constexpr int CellPadding = 16;
constexpr int CellHeight = 24;
/// A column that fits its contents is not made wider than any window.
constexpr int MostWidth = 800;

} // namespace

CellDelegate::CellDelegate(const BrenListModel& model, QObject* parent)
    : QAbstractItemDelegate(parent), m_model(model) {}

void CellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    CellLook look;
    look.rect = option.rect;
    look.grey = colours.rowShading && index.row() % 2 == 0 && index.column() != colours.unshadedColumn;
    look.accent = index.column() == colours.accentColumn;
    look.selected = option.state & QStyle::State_Selected;
    look.focused = option.state & QStyle::State_HasFocus;
    look.alignment = m_model.ColumnAlignment(index.column());
    look.highlight = option.palette.color(QPalette::Active, QPalette::Highlight);
    painter->setFont(option.font);
    m_painter.Paint(*painter, m_model.CellText(index.row(), index.column()), look);
}

QSize CellDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QString text = m_model.CellText(index.row(), index.column());
    const CellMarkup cell = CellMarkup::Parse(text);
    int width = CellGeometry::IconSize;
    if (cell.kind == CellKind::Progress)
        width = option.fontMetrics.horizontalAdvance(cell.Caption());
    else if (cell.kind != CellKind::Icon && cell.kind != CellKind::Swatch)
        width = option.fontMetrics.horizontalAdvance(cell.text.left(MostWidth).toString());
    return {qMin(width + CellPadding, MostWidth), CellHeight};
}
