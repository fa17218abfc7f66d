#include "look/ConsoleStyle.h"

#include "look/Look.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTextCharFormat>

namespace {

constexpr int ControlHeight = 28;

void DrawBox(QPainter& painter, const QRectF& bounds, const QColor& line, const QColor& fill,
             qreal width = 1) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, width));
    painter.setBrush(fill);
    painter.drawRoundedRect(bounds.adjusted(width / 2, width / 2, -width / 2, -width / 2), 4, 4);
    painter.restore();
}

void DrawButton(QPainter& painter, const QStyleOption& option) {
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool pressed = option.state & (QStyle::State_Sunken | QStyle::State_On);
    const bool hovered = enabled && option.state & QStyle::State_MouseOver;
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    const bool preset = button && button->features & QStyleOptionButton::DefaultButton;
    DrawBox(painter, option.rect,
            preset && enabled ? Look::Accent
            : hovered         ? Look::AccentLine
                              : Look::Line,
            pressed || hovered ? Look::AccentTint : Look::Paper);
    if (option.state & QStyle::State_HasFocus)
        Look::DrawFocusRing(painter, option.rect, 4);
}

void DrawCheck(QPainter& painter, const QStyleOption& option) {
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool set = option.state & (QStyle::State_On | QStyle::State_NoChange);
    const QColor colour = enabled ? Look::Accent : Look::Line;
    const QRectF box(option.rect);
    DrawBox(painter, box, set || option.state & QStyle::State_MouseOver ? colour : Look::Muted,
            set ? colour : Look::Paper);
    if (!set)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Look::Paper, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPainterPath mark;
    const auto at = [&box](qreal x, qreal y) {
        return box.topLeft() + QPointF(x * box.width(), y * box.height());
    };
    if (option.state & QStyle::State_NoChange) {
        mark.moveTo(at(0.25, 0.5));
        mark.lineTo(at(0.75, 0.5));
    } else {
        mark.moveTo(at(0.24, 0.52));
        mark.lineTo(at(0.43, 0.71));
        mark.lineTo(at(0.77, 0.31));
    }
    painter.drawPath(mark);
    painter.restore();
}

void DrawRadio(QPainter& painter, const QStyleOption& option) {
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool set = option.state & QStyle::State_On;
    const QColor colour = enabled ? Look::Accent : Look::Line;
    const QRectF ring = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(set || option.state & QStyle::State_MouseOver ? colour : Look::Muted);
    painter.setBrush(Look::Paper);
    painter.drawEllipse(ring);
    if (set) {
        painter.setBrush(colour);
        painter.drawEllipse(ring.adjusted(3.5, 3.5, -3.5, -3.5));
    }
    painter.restore();
}

/// A grip that is seen at rest, darker below the pointer.
void DrawScrollBar(QPainter& painter, const QStyleOptionSlider& bar, const QRect& grip) {
    painter.fillRect(bar.rect, Look::Side);
    if (bar.maximum == bar.minimum)
        return;
    const bool held =
        bar.activeSubControls & QStyle::SC_ScrollBarSlider && bar.state & QStyle::State_MouseOver;
    const qreal thickness = bar.orientation == Qt::Horizontal ? grip.height() : grip.width();
    const qreal inset = thickness / 4;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(held ? Look::Secondary : Look::ScrollGrip);
    painter.drawRoundedRect(QRectF(grip).adjusted(inset, inset, -inset, -inset), thickness / 4,
                            thickness / 4);
    painter.restore();
}

void DrawFieldFrame(QPainter& painter, const QStyleOption& option) {
    const bool focused = option.state & QStyle::State_HasFocus && option.state & QStyle::State_Enabled;
    DrawBox(painter, option.rect, focused ? Look::Accent : Look::Line, Qt::transparent, focused ? 2 : 1);
}

} // namespace

ConsoleStyle::ConsoleStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

void ConsoleStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    switch (element) {
    case PE_FrameFocusRect:
        Look::DrawFocusRing(*painter, option->rect, 4);
        break;
    case PE_PanelButtonCommand:
        DrawButton(*painter, *option);
        break;
    case PE_IndicatorCheckBox:
        DrawCheck(*painter, *option);
        break;
    case PE_FrameLineEdit:
        DrawFieldFrame(*painter, *option);
        break;
    case PE_IndicatorRadioButton:
        DrawRadio(*painter, *option);
        break;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void ConsoleStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        control == CC_ScrollBar && bar)
        return DrawScrollBar(*painter, *bar, subControlRect(control, bar, SC_ScrollBarSlider, widget));
    const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(option);
    if (control != CC_SpinBox || !spin || !spin->frame) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        if (control == CC_ComboBox && option->state & State_HasFocus)
            Look::DrawFocusRing(*painter, option->rect, 4);
        return;
    }
    QStyleOptionSpinBox plain = *spin;
    plain.frame = false;
    painter->fillRect(spin->rect, Look::Paper);
    QProxyStyle::drawComplexControl(control, &plain, painter, widget);
    DrawFieldFrame(*painter, *spin);
}

QRect ConsoleStyle::subElementRect(SubElement element, const QStyleOption* option,
                                   const QWidget* widget) const {
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    return element == SE_LineEditContents ? rect.adjusted(4, 0, -2, 0) : rect;
}

QSize ConsoleStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                     const QWidget* widget) const {
    QSize whole = QProxyStyle::sizeFromContents(type, option, size, widget);
    if (type == CT_PushButton || type == CT_LineEdit || type == CT_ComboBox || type == CT_SpinBox)
        whole.setHeight(std::max(whole.height(), ControlHeight));
    if (type == CT_PushButton)
        whole.rwidth() += 12;
    return whole;
}

int ConsoleStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return 14;
    case PM_ButtonDefaultIndicator:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int ConsoleStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* data) const {
    if (hint == SH_EtchDisabledText || hint == SH_DitherDisabledText ||
        hint == SH_DialogButtonBox_ButtonsHaveIcons)
        return 0;
    auto* format = qstyleoption_cast<QStyleHintReturnVariant*>(data);
    if (hint == SH_TextControl_FocusIndicatorTextCharFormat && format) {
        QTextCharFormat focused;
        focused.setBackground(Look::AccentTint);
        focused.setProperty(QTextFormat::OutlinePen, QPen(Look::Accent, 1.5));
        format->variant = focused;
        return 1;
    }
    return QProxyStyle::styleHint(hint, option, widget, data);
}
