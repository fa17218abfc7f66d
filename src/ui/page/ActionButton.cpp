#include "page/ActionButton.h"

#include "look/AccessiblePart.h"
#include "look/Look.h"

#include <QKeyEvent>
#include <QPainter>

namespace {

constexpr int IconInText = 16;
constexpr int IconAlone = 18;
constexpr int Gap = 8;
constexpr int FramedInset = 10;
constexpr int LinkInset = 8;
constexpr int Slack = 2;
constexpr int LinkWidth = 170; ///< of the column beside its scroll bar; a longer caption takes a second line

class AccessibleActionButton : public AccessiblePart {
public:
    explicit AccessibleActionButton(ActionButton& button)
        : AccessiblePart(&button, QAccessible::Button), m_button(button) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.busy = m_button.IsBusy();
        return state;
    }

    QStringList actionNames() const override { return QAccessibleWidget::actionNames() << pressAction(); }

    void doAction(const QString& action) override {
        if (action == pressAction())
            m_button.click();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    ActionButton& m_button;
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
    auto* button = qobject_cast<ActionButton*>(object);
    return button ? new AccessibleActionButton(*button) : nullptr;
}

} // namespace

ActionButton::ActionButton(Kind kind, QWidget* parent) : QAbstractButton(parent), m_kind(kind) {
    static const bool once = (QAccessible::installFactory(MakeAccessible), true);
    Q_UNUSED(once)
    setFocusPolicy(Qt::StrongFocus);
    setFont(Look::Font(Look::Small));
    setSizePolicy(kind == Kind::Link ? QSizePolicy::Expanding : QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::ArrowCursor);
    if (kind == Kind::Icon)
        setFixedSize(Height, Height);
    connect(this, &QAbstractButton::clicked, this, [this] {
        if (!m_busy)
            emit Clicked();
    });
}

void ActionButton::Set(const QString& caption, const QIcon& icon) {
    setText(caption);
    setAccessibleName(caption);
    setIcon(icon);
    ShowToolTip();
}

void ActionButton::SetCompact(bool compact) {
    if (std::exchange(m_compact, compact) == compact)
        return;
    ShowToolTip();
    updateGeometry();
    update();
}

bool ActionButton::IsIconOnly() const {
    return m_kind == Kind::Icon || (m_compact && !icon().isNull());
}

void ActionButton::ShowToolTip() {
    QStringList lines{IsIconOnly() ? text() : QString(), m_why};
    lines.removeAll(QString());
    setToolTip(Look::ToolTip(lines.join(u'\n')));
}

void ActionButton::SetBusy(bool busy, const QString& why) {
    if (busy == m_busy && why == m_why)
        return;
    m_busy = busy;
    m_why = why;
    ShowToolTip();
    setAccessibleDescription(!busy ? QString() : why.isEmpty() ? tr("Not available now") : why);
    QAccessible::State changed;
    changed.busy = true;
    QAccessibleStateChangeEvent told(this, changed);
    QAccessible::updateAccessibility(&told);
    update();
}

QSize ActionButton::sizeHint() const {
    if (IsIconOnly())
        return {Height, Height};
    const int width = CaptionWidth();
    if (m_kind != Kind::Link)
        return {width, Height};
    const bool wraps = width - Slack > LinkWidth;
    return {std::min(width, LinkWidth), wraps ? Height + fontMetrics().lineSpacing() : Height};
}

int ActionButton::CaptionWidth() const {
    const int inset = m_kind == Kind::Link ? LinkInset : FramedInset;
    const int iconWidth = icon().isNull() ? 0 : IconInText + Gap;
    return 2 * inset + iconWidth + fontMetrics().size(Qt::TextSingleLine, text()).width() + Slack;
}

void ActionButton::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            click();
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
        // Beside a card's title they belong to the list of cards.
        if (m_kind == Kind::Icon) {
            event->ignore();
            break;
        }
        [[fallthrough]];
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

void ActionButton::PaintFrame(QPainter& painter) const {
    const bool touched = !m_busy && (underMouse() || isDown());
    if (!touched && m_kind != Kind::Framed)
        return;
    painter.setPen(m_kind == Kind::Link ? QPen(Qt::NoPen) : QPen(touched ? Look::AccentLine : Look::Line));
    painter.setBrush(m_kind == Kind::Icon && isDown() ? Look::AccentLine
                     : touched                        ? Look::AccentTint
                                                      : Look::Paper);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Look::CornerRadius,
                            Look::CornerRadius);
}

void ActionButton::PaintIcon(QPainter& painter, const QRect& place) const {
    icon().paint(&painter, place, Qt::AlignCenter, m_busy ? QIcon::Disabled : QIcon::Normal);
}

void ActionButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    PaintFrame(painter);
    if (IsIconOnly()) {
        QRect place(0, 0, IconAlone, IconAlone);
        place.moveCenter(rect().center());
        PaintIcon(painter, place);
    } else {
        const int inset = m_kind == Kind::Link ? LinkInset : FramedInset;
        QRect place = rect().adjusted(inset, 0, -inset, 0);
        if (!icon().isNull()) {
            PaintIcon(painter, {place.left(), (height() - IconInText) / 2, IconInText, IconInText});
            place.setLeft(place.left() + IconInText + Gap);
        }
        const QColor ink = m_kind == Kind::Link ? Look::Accent : Look::Ink;
        painter.setPen(m_busy ? palette().color(QPalette::Disabled, QPalette::ButtonText) : ink);
        if (height() > Height)
            painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextWordWrap, text());
        else
            Look::DrawTextLine(painter, place, text());
    }
    if (hasFocus())
        Look::DrawFocusRing(painter, rect());
}
