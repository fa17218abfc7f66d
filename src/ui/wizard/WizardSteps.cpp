#include "wizard/WizardSteps.h"

#include "look/Look.h"

#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace {

constexpr int ColumnWidth = 176;
constexpr int Inset = 16;
constexpr int CaptionTop = 20;
constexpr int CaptionGap = 12;  ///< below it
constexpr int LeastHeight = 34; ///< of a step
constexpr int StepPadding = 14; ///< above and below its words together
constexpr int DotSize = 14;
constexpr int DotGap = 10;
constexpr int WordsEnd = 6; ///< what they keep off the column's edge
constexpr int AccentBar = 3;

int WrappedHeight(const QFont& font, int width, const QString& text) {
    return QFontMetrics(font).boundingRect(0, 0, width, QWIDGETSIZE_MAX, Qt::TextWordWrap, text).height();
}

bool HasLongerWord(const QFont& font, int width, const QString& text) {
    const QStringList words = text.split(u' ');
    return std::any_of(words.begin(), words.end(), [&, metrics = QFontMetrics(font)](const QString& word) {
        return metrics.horizontalAdvance(word) > width;
    });
}

// Whether or not a step is the present one, whose words are bold, its room is the same.
QFont WidestFont() {
    return Look::Font(Look::Body, QFont::Bold);
}

QFont CaptionFont() {
    return Look::Font(Look::Caption, QFont::Bold);
}

QRect CaptionRect(const QString& caption) {
    const int width = ColumnWidth - 2 * Inset;
    return {Inset, CaptionTop, width, WrappedHeight(CaptionFont(), width, caption)};
}

QRect WordsIn(const QRect& band) {
    return band.adjusted(Inset + DotSize + DotGap, 0, -WordsEnd, 0);
}

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

std::vector<QRect> WizardSteps::Bands() const {
    std::vector<QRect> bands;
    QRect band(0, CaptionRect(m_caption).bottom() + 1 + CaptionGap, ColumnWidth - 1, LeastHeight);
    for (const Step& step : m_steps) {
        const int words = WrappedHeight(WidestFont(), WordsIn(band).width(), step.title);
        band.setHeight(std::max(LeastHeight, words + StepPadding));
        bands.push_back(band);
        band.moveTop(band.bottom() + 1);
    }
    return bands;
}

QString WizardSteps::CutText() const {
    if (HasLongerWord(CaptionFont(), CaptionRect(m_caption).width(), m_caption))
        return m_caption;
    const std::vector<QRect> bands = Bands();
    for (std::size_t i = 0; i < m_steps.size(); ++i)
        if (bands[i].bottom() >= height() ||
            HasLongerWord(WidestFont(), WordsIn(bands[i]).width(), m_steps[i].title))
            return m_steps[i].title;
    return {};
}

void WizardSteps::PaintStep(QPainter& painter, const Step& step, const QRect& band) const {
    const bool now = step.mark == WizardTravel::Mark::Now;
    const auto place = [this](const QRect& rect) {
        return QStyle::visualRect(layoutDirection(), this->rect(), rect);
    };
    if (now) {
        painter.fillRect(place(band), Look::Paper);
        painter.fillRect(place({0, band.y(), AccentBar, band.height()}), Look::Accent);
    }
    PaintDot(painter, place({Inset, band.center().y() - DotSize / 2 + 1, DotSize, DotSize}), step.mark);
    painter.setFont(now ? WidestFont() : Look::Font(Look::Body));
    painter.setPen(now ? Look::Ink : Look::Secondary);
    painter.drawText(place(WordsIn(band)), Qt::AlignVCenter | Qt::AlignLeading | Qt::TextWordWrap,
                     step.title);
}

void WizardSteps::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setLayoutDirection(layoutDirection());
    painter.fillRect(rect(), Look::Side);
    painter.fillRect(isRightToLeft() ? 0 : width() - 1, 0, 1, height(), Look::Line);
    painter.setFont(CaptionFont());
    painter.setPen(Look::Secondary);
    painter.drawText(QStyle::visualRect(layoutDirection(), rect(), CaptionRect(m_caption)),
                     Qt::AlignLeading | Qt::TextWordWrap, m_caption);
    const std::vector<QRect> bands = Bands();
    for (std::size_t i = 0; i < m_steps.size(); ++i)
        PaintStep(painter, m_steps[i], bands[i]);
}
