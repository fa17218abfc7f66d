#include "list/HeaderCtrlCl.h"

#include "look/GradientPainter.h"
#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr QRgb Rim = 0xFF696969;
constexpr QRgb GradientFirst = 0xFFE3E3E3;
constexpr QRgb GradientSecond = 0xFFA1A1A1;
constexpr QRgb CaptionColour = 0xFF404040;
constexpr int CornerRadius = 12;
constexpr int CaptionSize = 14;
constexpr int DecorationSize = 16;
constexpr int ArrowRoom = 16;
constexpr int LeftInset = 8;
constexpr int RightInset = 6;

QFont CaptionFont() {
    QFont font = Look::Font(Look::Body);
    font.setPixelSize(CaptionSize);
    return font;
}

/// Broken at the blank that leaves the shorter lines; as it is without one.
QStringList InTwoLines(const QString& title, const QFontMetrics& metrics) {
    QStringList best{title};
    const auto widest = [&metrics](const QStringList& lines) {
        int width = 0;
        for (const QString& line : lines)
            width = std::max(width, metrics.horizontalAdvance(line));
        return width;
    };
    for (qsizetype blank = title.indexOf(u' '); blank >= 0; blank = title.indexOf(u' ', blank + 1)) {
        const QStringList lines{title.left(blank), title.mid(blank + 1)};
        if (widest(lines) < widest(best))
            best = lines;
    }
    return best;
}

QPainterPath Rounded(const QRectF& rect, qreal radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

/// The rim stays visible around the gradient, whose lines are computed over the whole height. They are not
/// smoothed: at 150 % that would let the rim's colour through between them.
void PaintBand(QPainter& painter, const QRect& rect) {
    const QPainterPath border = Rounded(QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), CornerRadius - 0.5);
    painter.save();
    painter.setClipPath(border);
    painter.fillRect(rect, QColor(Rim));
    PaintGradient(painter, rect, GradientFirst, GradientSecond, GradientMode::VerticalMirror);
    painter.restore();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.strokePath(border, QColor(Rim));
    painter.restore();
}

void PaintArrow(QPainter& painter, QPoint centre, Qt::SortOrder order) {
    const int tip = order == Qt::AscendingOrder ? -3 : 3;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(CaptionColour));
    painter.drawPolygon(
        QPolygon({centre + QPoint(-4, -tip), centre + QPoint(4, -tip), centre + QPoint(0, tip)}));
    painter.restore();
}

} // namespace

CHeaderCtrlCl::CHeaderCtrlCl(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    setAccessibleName(tr("List Ctrl as list"));
    setMinimumSectionSize(16);
    setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setHighlightSections(false);
    connect(this, &QHeaderView::sectionResized, this, [this] { m_resized = true; });
}

void CHeaderCtrlCl::SetCustom(bool custom) {
    m_custom = custom;
    updateGeometry();
    viewport()->update();
}

int CHeaderCtrlCl::TitleWidth(int section) const {
    const QString title = model()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
    return title.isEmpty() ? 0
                           : QFontMetrics(CaptionFont()).horizontalAdvance(title) + LeftInset + RightInset;
}

int CHeaderCtrlCl::WrappedTitleWidth(int section) const {
    const QFontMetrics metrics(CaptionFont());
    int width = 0;
    for (const QString& line :
         InTwoLines(model()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString(), metrics))
        width = std::max(width, metrics.horizontalAdvance(line));
    return width == 0 ? 0 : width + LeftInset + RightInset;
}

QSize CHeaderCtrlCl::sizeHint() const {
    const QSize size = QHeaderView::sizeHint();
    return m_custom ? QSize(size.width(), CustomHeight) : size;
}

void CHeaderCtrlCl::paintEvent(QPaintEvent* event) {
    if (!m_custom) {
        QHeaderView::paintEvent(event);
        return;
    }
    QPainter painter(viewport());
    painter.fillRect(event->rect(), Look::Paper);
    PaintBand(painter, viewport()->rect());
    painter.setFont(CaptionFont());
    for (int section = 0; section < count(); ++section) {
        if (!isSectionHidden(section))
            PaintSection(painter, section);
    }
}

void CHeaderCtrlCl::PaintSection(QPainter& painter, int section) const {
    const QRect cell(sectionViewportPosition(section), 0, sectionSize(section), viewport()->height());
    if (!cell.intersects(viewport()->rect()))
        return;
    const QString caption = model()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
    const bool sorted = isSortIndicatorShown() && sortIndicatorSection() == section;
    const QRect room = cell.adjusted(LeftInset, 0, sorted ? -ArrowRoom : -RightInset, 0);
    const QFontMetrics metrics = painter.fontMetrics();
    QStringList lines{caption};
    if (metrics.horizontalAdvance(caption) > room.width())
        lines = InTwoLines(caption, metrics);
    for (QString& line : lines)
        line = metrics.elidedText(line, Qt::ElideRight, room.width());
    const QString text = lines.join(u'\n');
    const auto alignment =
        model()->headerData(section, Qt::Horizontal, Qt::TextAlignmentRole).value<Qt::Alignment>();
    const int flags = int(alignment) | (lines.size() == 1 ? Qt::TextSingleLine : 0);
    painter.setPen(QColor(CaptionColour));
    const QRect drawn = painter.boundingRect(room, flags, text);
    painter.drawText(room, flags, text);
    if (sorted)
        PaintArrow(painter, {qMax(drawn.right(), room.x()) + 9, cell.center().y()}, sortIndicatorOrder());
    if (cell.right() < viewport()->width() - CornerRadius) {
        const QRect divider(cell.right() + 1 - DecorationSize / 2, (cell.height() - DecorationSize) / 2,
                            DecorationSize, DecorationSize);
        IconRegistry::Icon(HeaderDecorationIcon).paint(&painter, divider);
    }
}

void CHeaderCtrlCl::mousePressEvent(QMouseEvent* event) {
    m_resized = false;
    QHeaderView::mousePressEvent(event);
}

void CHeaderCtrlCl::mouseReleaseEvent(QMouseEvent* event) {
    QHeaderView::mouseReleaseEvent(event);
    if (std::exchange(m_resized, false))
        emit DividerReleased();
}
