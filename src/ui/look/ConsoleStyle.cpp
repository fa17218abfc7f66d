#include "look/ConsoleStyle.h"

#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QAbstractScrollArea>
#include <QDateTime>
#include <QGroupBox>
#include <QPainter>
#include <QPainterPath>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTextCharFormat>
#include <QToolButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int ControlHeight = 28;
constexpr int BarHeight = 6;
constexpr qint64 WanderMilliseconds = 1600;

void DrawBox(QPainter& painter, const QRectF& bounds, const QColor& line, const QColor& fill,
             qreal width = 1) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(line, width));
    painter.setBrush(fill);
    painter.drawRoundedRect(bounds.adjusted(width / 2, width / 2, -width / 2, -width / 2), 4, 4);
    painter.restore();
}

/// The button that the Enter key presses.
bool IsMainButton(const QStyleOption& option) {
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    return button && button->features & QStyleOptionButton::DefaultButton &&
           option.state & QStyle::State_Enabled;
}

void DrawButtonRing(QPainter& painter, const QStyleOption& option) {
    Look::DrawFocusRing(painter, option.rect, 4);
    if (IsMainButton(option)) // on the accent colour the ring is told by a light one in it
        DrawBox(painter, QRectF(option.rect).adjusted(2, 2, -2, -2), Look::Paper, Qt::transparent);
}

void DrawButton(QPainter& painter, const QStyleOption& option) {
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool pressed = option.state & (QStyle::State_Sunken | QStyle::State_On);
    const bool hovered = enabled && option.state & QStyle::State_MouseOver;
    if (IsMainButton(option)) {
        DrawBox(painter, option.rect, Look::Accent,
                pressed || hovered ? Look::Accent.lighter(115) : Look::Accent);
    } else {
        DrawBox(painter, option.rect, hovered ? Look::AccentLine : Look::Line,
                pressed || hovered ? Look::AccentTint : Look::Paper);
    }
    if (option.state & QStyle::State_HasFocus)
        DrawButtonRing(painter, option);
}

void DrawCheck(QPainter& painter, const QStyleOption& option) {
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool set = option.state & QStyle::State_On;
    const bool partly = option.state & QStyle::State_NoChange;
    const QColor colour = enabled ? Look::Accent : Look::Line;
    const QRectF box(option.rect);
    DrawBox(painter, box,
            set || partly || option.state & QStyle::State_MouseOver || !enabled ? colour : Look::Muted,
            set ? colour : Look::Paper);
    if (!set && !partly)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(partly ? colour : QColor(Look::Paper), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPainterPath mark;
    const auto at = [&box](qreal x, qreal y) {
        return box.topLeft() + QPointF(x * box.width(), y * box.height());
    };
    if (partly) {
        mark.moveTo(at(0.26, 0.5));
        mark.lineTo(at(0.74, 0.5));
    } else {
        mark.moveTo(at(0.24, 0.52));
        mark.lineTo(at(0.43, 0.71));
        mark.lineTo(at(0.77, 0.31));
    }
    painter.drawPath(mark);
    painter.restore();
}

/// A raised tool button has its ring from the panel below its words.
bool HasRingInPanel(const QWidget* widget) {
    const auto* tool = qobject_cast<const QToolButton*>(widget);
    return tool && !tool->autoRaise();
}

int TitleHeight(const QStyleOption& option, const QWidget* widget) {
    const auto* group = qobject_cast<const QGroupBox*>(widget);
    return group && !group->title().isEmpty() ? option.fontMetrics.height() + 3 : 0;
}

/// The arrow that opens and closes a node; the lines between nodes are left out.
void DrawBranch(QPainter& painter, const QStyleOption& option) {
    if (!(option.state & QStyle::State_Children))
        return;
    const QPointF at = QRectF(option.rect).center();
    const bool left = option.direction == Qt::RightToLeft;
    QPolygonF arrow({{-2, -4}, {2, 0}, {-2, 4}});
    if (option.state & QStyle::State_Open)
        arrow = QPolygonF({{-4, -2}, {0, 2}, {4, -2}});
    else if (left)
        arrow = QPolygonF({{2, -4}, {-2, 0}, {2, 4}});
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const bool enabled = option.state & QStyle::State_Enabled;
    painter.setPen(
        QPen(enabled ? Look::Secondary : Look::DotLine, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(arrow.translated(at));
    painter.restore();
}

void DrawBar(QPainter& painter, const QStyleOptionProgressBar& bar) {
    const QRectF groove(bar.rect);
    const auto fill = [&painter](const QRectF& part, const QColor& colour) {
        const qreal radius = std::min(part.height(), part.width()) / 2;
        painter.setBrush(colour);
        painter.drawRoundedRect(part, radius, radius);
    };
    QRectF part = groove;
    if (bar.maximum > bar.minimum) {
        part.setWidth(groove.width() * (bar.progress - bar.minimum) / (bar.maximum - bar.minimum));
    } else { // its end is not known: a part wanders
        const qreal way =
            qreal(QDateTime::currentMSecsSinceEpoch() % WanderMilliseconds) / WanderMilliseconds;
        part.setWidth(groove.width() / 4);
        part.moveLeft(groove.left() + way * (groove.width() + part.width()) - part.width());
    }
    if (bar.direction == Qt::RightToLeft)
        part.moveLeft(groove.left() + groove.right() - part.right());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    fill(groove, Look::BandBottom);
    if (part.intersected(groove).width() > 0)
        fill(part.intersected(groove), bar.state & QStyle::State_Enabled ? Look::Accent : Look::Line);
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

ConsoleStyle::ConsoleStyle() : QProxyStyle(QStyleFactory::create(u"Fusion"_s)) {}

void ConsoleStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    switch (element) {
    case PE_FrameFocusRect:
        if (HasRingInPanel(widget))
            break;
        Look::DrawFocusRing(*painter, option->rect, 4);
        break;
    case PE_PanelButtonCommand:
        DrawButton(*painter, *option);
        break;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        DrawCheck(*painter, *option);
        break;
    case PE_FrameLineEdit:
        DrawFieldFrame(*painter, *option);
        break;
    case PE_IndicatorRadioButton:
        DrawRadio(*painter, *option);
        break;
    case PE_IndicatorBranch:
        DrawBranch(*painter, *option);
        break;
    case PE_Frame:
        if (qobject_cast<const QAbstractScrollArea*>(widget))
            DrawFieldFrame(*painter, *option);
        else
            QProxyStyle::drawPrimitive(element, option, painter, widget);
        break;
    case PE_FrameGroupBox:
        DrawBox(*painter, option->rect.adjusted(0, TitleHeight(*option, widget), 0, 0), Look::Line,
                Qt::transparent);
        break;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void ConsoleStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    if (element == CE_ProgressBar && bar && !bar->textVisible) {
        DrawBar(*painter, *bar);
        return;
    }
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element == CE_PushButtonLabel && button && IsMainButton(*button)) {
        QStyleOptionButton light = *button;
        light.palette.setColor(QPalette::ButtonText, Look::Paper);
        QProxyStyle::drawControl(element, &light, painter, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
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
    const auto* tool = qstyleoption_cast<const QStyleOptionToolButton*>(option);
    if (type == CT_ToolButton && tool && !tool->text.isEmpty())
        whole = {whole.width() + 8, std::max(whole.height(), ControlHeight)};
    const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option);
    if (type == CT_ProgressBar && bar && !bar->textVisible)
        whole.setHeight(BarHeight);
    return whole;
}

int ConsoleStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_DefaultFrameWidth: // room for the ring
        if (qobject_cast<const QAbstractScrollArea*>(widget))
            return 2;
        return QProxyStyle::pixelMetric(metric, option, widget);
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
    if (hint == SH_ItemView_ShowDecorationSelected)
        return 1;
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

QIcon ConsoleStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                                 const QWidget* widget) const {
    // The toolkit's own one would be looked up in the desktop's icon themes: a sixth of the start.
    if (which == SP_LineEditClearButton)
        return IconRegistry::Icon(CancelTaskIcon, Look::Secondary);
    return QProxyStyle::standardIcon(which, option, widget);
}
