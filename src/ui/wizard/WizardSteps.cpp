#include "wizard/WizardSteps.h"

#include "look/Look.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr int ColumnWidth = 176;
constexpr int Inset = 16;
constexpr int FirstStep = 46;
constexpr int StepHeight = 34;
constexpr int DotSize = 14;
constexpr int AccentBar = 3;

void PaintDot(QPainter& painter, const QRectF& dot, WizardTravel::Mark mark) {
    const bool toCome = mark == WizardTravel::Mark::ToCome;
    painter.setPen(toCome ? Look::DotLine : Look::Accent);
    painter.setBrush(toCome ? Look::Paper : Look::Accent);
    painter.drawEllipse(dot.adjusted(0.5, 0.5, -0.5, -0.5));
    if (mark == WizardTravel::Mark::Now) {
        painter.setBrush(Look::Paper);
        painter.drawEllipse(dot.center(), 2.8, 2.8);
    } else if (mark == WizardTravel::Mark::Done) {
        painter.setPen(QPen(Look::Paper, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF at = dot.center();
        painter.drawPolyline(
            QPolygonF({at + QPointF(-3.2, 0.2), at + QPointF(-0.9, 2.5), at + QPointF(3.3, -2.4)}));
    }
}

} // namespace

WizardSteps::WizardSteps(const QString& caption, QWidget* parent)
    : QWidget(parent), m_caption(caption.toUpper()) {
    setFixedWidth(ColumnWidth);
    setAccessibleName(tr("Steps"));
}

void WizardSteps::SetSteps(std::vector<Step> steps) {
    std::erase_if(steps, [](const Step& step) { return step.mark == WizardTravel::Mark::LeftOut; });
    if (steps == m_steps)
        return;
    m_steps = std::move(steps);
    const auto now = std::find_if(m_steps.begin(), m_steps.end(),
                                  [](const Step& step) { return step.mark == WizardTravel::Mark::Now; });
    if (now != m_steps.end())
        setAccessibleDescription(
            tr("Step %1 of %2: %3").arg(now - m_steps.begin() + 1).arg(m_steps.size()).arg(now->title));
    update();
}

void WizardSteps::PaintStep(QPainter& painter, const Step& step, const QRect& band) const {
    const bool now = step.mark == WizardTravel::Mark::Now;
    const bool mirrored = isRightToLeft();
    const auto place = [&](QRect rect) {
        return mirrored ? QRect(width() - rect.right() - 1, rect.y(), rect.width(), rect.height()) : rect;
    };
    if (now) {
        painter.fillRect(band, Look::Paper);
        painter.fillRect(place({0, band.y(), AccentBar, band.height()}), Look::Accent);
    }
    PaintDot(painter, place({Inset, band.center().y() - DotSize / 2 + 1, DotSize, DotSize}), step.mark);
    painter.setFont(Look::Font(Look::Body, now ? QFont::Bold : QFont::Normal));
    painter.setPen(now ? Look::Ink : Look::Secondary);
    const QRect words = place(band.adjusted(Inset + DotSize + 10, 0, -6, 0));
    painter.drawText(words, int(Qt::AlignVCenter | (mirrored ? Qt::AlignRight : Qt::AlignLeft)),
                     painter.fontMetrics().elidedText(step.title, Qt::ElideRight, words.width()));
}

void WizardSteps::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), Look::Side);
    painter.fillRect(isRightToLeft() ? 0 : width() - 1, 0, 1, height(), Look::Line);
    painter.setFont(Look::Font(Look::Caption, QFont::Bold));
    painter.setPen(Look::Secondary);
    const QRect caption(Inset, 14, width() - 2 * Inset, 24);
    painter.drawText(caption, Qt::AlignVCenter | Qt::AlignLeading,
                     painter.fontMetrics().elidedText(m_caption, Qt::ElideRight, caption.width()));
    QRect band(0, FirstStep, width() - 1, StepHeight);
    for (const Step& step : m_steps) {
        PaintStep(painter, step, band);
        band.translate(0, StepHeight);
    }
}
