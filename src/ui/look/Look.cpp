#include "look/Look.h"

#include "look/AccessiblePart.h"
#include "look/ConsoleStyle.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QTextDocument>
#include <QWidget>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QPalette MakePalette() {
    QPalette palette(Look::Side);
    palette.setColor(QPalette::Window, Look::Side);
    palette.setColor(QPalette::WindowText, Look::Ink);
    palette.setColor(QPalette::Base, Look::Paper);
    palette.setColor(QPalette::AlternateBase, Look::Side);
    palette.setColor(QPalette::Text, Look::Ink);
    palette.setColor(QPalette::Button, Look::Paper);
    palette.setColor(QPalette::ButtonText, Look::Ink);
    palette.setColor(QPalette::Highlight, Look::Accent);
    palette.setColor(QPalette::HighlightedText, Look::Paper);
    palette.setColor(QPalette::Link, Look::Accent);
    palette.setColor(QPalette::LinkVisited, Look::Accent);
    palette.setColor(QPalette::ToolTipBase, Look::Paper);
    palette.setColor(QPalette::ToolTipText, Look::Ink);
    palette.setColor(QPalette::PlaceholderText, Look::Muted);
    palette.setColor(QPalette::Disabled, QPalette::Base, Look::Side);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x9A, 0xA3, 0xB2));
    return palette;
}

void SetRole(QWidget& widget, QPalette::ColorRole role, const QColor& colour) {
    QPalette palette = widget.palette();
    palette.setColor(role, colour);
    widget.setPalette(palette);
}

} // namespace

QFont Look::Font(TextSize size, QFont::Weight weight) {
    QFont font;
    font.setFamilies({u"Arial"_s, u"Liberation Sans"_s});
    font.setPixelSize(size);
    font.setWeight(weight);
    font.setHintingPreference(QFont::PreferVerticalHinting);
    return font;
}

void Look::SetInk(QWidget& widget, const QColor& colour) {
    SetRole(widget, QPalette::WindowText, colour);
}

void Look::SetGround(QWidget& widget, const QColor& colour) {
    SetRole(widget, QPalette::Window, colour);
    widget.setAutoFillBackground(true);
}

void Look::TintSelection(QWidget& view) {
    SetRole(view, QPalette::Highlight, AccentTint);
    SetRole(view, QPalette::HighlightedText, Ink);
}

QString Look::ToolTip(const QString& text) {
    // Qt takes a text for markup when it looks like it, so it is made markup at all times.
    return text.isEmpty() ? QString() : Qt::convertFromPlainText(text, Qt::WhiteSpaceNormal);
}

QString Look::OneLine(QStringView text) {
    QString line = text.toString();
    const auto breaks = [](QChar c) {
        return c < u' ' || (c >= u'\x7F' && c <= u'\x9F') || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
    };
    std::replace_if(line.begin(), line.end(), breaks, QChar(u' '));
    return line;
}

void Look::DrawTextLine(QPainter& painter, const QRect& place, QStringView text, Qt::Alignment alignment) {
    if (text.isEmpty() || place.width() <= 0)
        return;
    const qsizetype most = std::max(256, place.width());
    QString line = OneLine(text.left(most));
    if (text.size() > most)
        line += QChar(0x2026);
    painter.drawText(place, int(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(line, Qt::ElideRight, place.width()));
}

void Look::PaintBand(QPainter& painter, const QRect& band) {
    QLinearGradient shade(band.topLeft(), QPointF(band.left(), band.top() + band.height()));
    shade.setColorAt(0, BandTop);
    shade.setColorAt(1, BandBottom);
    painter.fillRect(band, shade);
    painter.fillRect(QRect(band.left(), band.bottom(), band.width(), 1), Line);
}

void Look::DrawFocusRing(QPainter& painter, const QRectF& bounds, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Accent, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(bounds.adjusted(1, 1, -1, -1), radius, radius);
    painter.restore();
}

void ApplyLook(QApplication& application) {
    TeachPartsToScreenReaders();
    application.setStyle(new ConsoleStyle);
    application.setPalette(MakePalette());
    application.setFont(Look::Font(Look::Body));
}
