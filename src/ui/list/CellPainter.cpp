#include "list/CellPainter.h"

#include "list/CellGeometry.h"
#include "look/GradientPainter.h"
#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

namespace {

constexpr QRgb White = 0xFFFFFFFF;
constexpr QRgb Grey = 0xFFF0F0F0;
constexpr QRgb Black = 0xFF000000;
constexpr QRgb PlainGreen = 0xFF008000;
constexpr QRgb StruckGrey = 0xFFCCCCCC;
constexpr QRgb FrameDark = 0xFFA1A1A1;
constexpr QRgb FrameLight = 0xFFE3E3E3;
constexpr QRgb BarDark = 0xFF004000;
constexpr QRgb BarLight = 0xFF00FF00;
constexpr int StruckSize = 16;

constexpr QRgb ColourOf(SwatchColour swatch) {
    switch (swatch) {
    case SwatchColour::Green:
        return 0xFF008000;
    case SwatchColour::Red:
        return 0xFFF00000;
    case SwatchColour::Yellow:
        break;
    }
    return 0xFFF0F000;
}

void DrawLine(QPainter& painter, const QRect& rect, Qt::Alignment alignment, QStringView text, QRgb colour) {
    painter.setPen(QColor(colour));
    Look::DrawTextLine(painter, rect, text, alignment);
}

void PaintPlain(QPainter& painter, const CellMarkup& cell, const CellLook& look) {
    painter.fillRect(look.rect, look.selected ? look.highlight : QColor(look.grey ? Grey : White));
    const QRgb unselected = cell.ellipsis || look.accent ? PlainGreen : Black;
    DrawLine(painter, CellGeometry::Text(look.rect), look.alignment, cell.text,
             look.selected ? White : unselected);
}

void PaintProgress(QPainter& painter, const CellMarkup& cell, const CellLook& look) {
    if (cell.maximum == 0)
        return;
    const QRect frame = CellGeometry::Bar(look.rect);
    PaintGradient(painter, frame, FrameDark, FrameLight, GradientMode::Glossy);
    PaintGradient(painter, CellGeometry::Filled(frame, cell.position, cell.maximum), BarDark, BarLight,
                  GradientMode::Glossy);
    DrawLine(painter, look.rect, Qt::AlignHCenter, cell.Caption(), Black);
}

void PaintStruck(QPainter& painter, const CellMarkup& cell, const CellLook& look) {
    QFont font = painter.font();
    font.setPixelSize(StruckSize);
    font.setStrikeOut(true);
    painter.setFont(font);
    DrawLine(painter, CellGeometry::StruckText(look.rect), Qt::AlignLeft, cell.text, StruckGrey);
}

/// A sign stands in the colour, for those who do not tell colours apart.
void PaintSwatch(QPainter& painter, SwatchColour swatch, const CellLook& look) {
    const QRect bar = CellGeometry::Bar(look.rect);
    painter.fillRect(bar, QColor(ColourOf(swatch)));
    QFont font = painter.font();
    font.setBold(true);
    painter.setFont(font);
    const QChar sign = swatch == SwatchColour::Green ? u'i' : swatch == SwatchColour::Red ? u'\u00D7' : u'!';
    DrawLine(painter, bar, Qt::AlignHCenter, QStringView(&sign, 1),
             swatch == SwatchColour::Yellow ? Black : White);
}

void PaintFocus(QPainter& painter, const CellLook& look, CellKind kind) {
    const bool onHighlight = look.selected && kind == CellKind::Plain;
    painter.setPen(QPen(onHighlight ? Look::Paper : Look::Accent, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(look.rect.adjusted(1, 1, -2, -2));
}

} // namespace

void CellPainter::Paint(QPainter& painter, QStringView text, const CellLook& look) {
    const CellMarkup cell = CellMarkup::Parse(text);
    painter.save();
    painter.setClipRect(look.rect, Qt::IntersectClip);
    if (cell.kind != CellKind::Plain)
        painter.fillRect(look.rect, QColor(White));
    switch (cell.kind) {
    case CellKind::Plain:
        PaintPlain(painter, cell, look);
        break;
    case CellKind::Icon:
        PaintIcon(painter, cell.icon, look);
        break;
    case CellKind::Progress:
        PaintProgress(painter, cell, look);
        break;
    case CellKind::Struck:
        PaintStruck(painter, cell, look);
        break;
    case CellKind::Swatch:
        PaintSwatch(painter, cell.swatch, look);
        break;
    }
    if (look.focused)
        PaintFocus(painter, look, cell.kind);
    painter.restore();
}

void CellPainter::PaintIcon(QPainter& painter, int number, const CellLook& look) {
    if (number != 0)
        Icon(number).paint(&painter, CellGeometry::Icon(look.rect));
}

QIcon CellPainter::Icon(int number) {
    const auto known = m_icons.constFind(number);
    if (known != m_icons.constEnd())
        return *known;
    QIcon icon = IconRegistry::Icon(number);
    if (!icon.isNull())
        m_icons.insert(number, icon);
    return icon;
}
