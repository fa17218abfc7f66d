#include "cards/LabeledPanel.h"

#include "look/Formatters.h"
#include "look/Look.h"

#include <QPainter>
#include <QPainterPath>

CLabeledPanel::CLabeledPanel(const QString& title, QWidget* parent) : QWidget(parent) {
    SetTitle(title);
    setAttribute(Qt::WA_Hover);
}

void CLabeledPanel::SetTitle(const QString& title) {
    m_title = title;
    setAccessibleName(title);
    update(BandRect());
}

QRect CLabeledPanel::TitleRect() const {
    return BandRect().adjusted(Look::TextInset, 0, -Look::TextInset, 0);
}

QRect CLabeledPanel::BodyRect() const {
    return rect().adjusted(1, m_titleBandHeight, -1, -1);
}

void CLabeledPanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath outline;
    outline.addRoundedRect(frame, Look::CornerRadius, Look::CornerRadius);
    painter.fillPath(outline, Look::Paper);

    painter.setClipPath(outline);
    Look::PaintBand(painter, BandRect());
    painter.setClipping(false);

    painter.setPen(underMouse() ? Look::AccentLine : Look::Line);
    painter.drawPath(outline);
    if (hasFocus())
        Look::DrawFocusRing(painter, rect());

    painter.setPen(Look::Ink);
    painter.setFont(Look::Font(Look::Body, QFont::Bold));
    const QRect place = TitleRect();
    painter.drawText(
        place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        Isolated(painter.fontMetrics().elidedText(Look::OneLine(m_title), Qt::ElideRight, place.width())));
}
