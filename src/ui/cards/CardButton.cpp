#include "cards/CardButton.h"

#include "cards/CardAccessible.h"
#include "look/Look.h"

#include <QKeyEvent>
#include <QPainter>

CardButton::CardButton(QWidget* parent) : QToolButton(parent) {
    setFixedSize(28, 28);
    setIconSize({18, 18});
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::ArrowCursor);
    connect(this, &QToolButton::clicked, this, [this] {
        if (!m_busy)
            emit Clicked();
    });
}

void CardButton::Set(const QString& caption, const QIcon& icon) {
    setToolTip(Look::ToolTip(caption));
    setAccessibleName(caption);
    setIcon(icon);
}

void CardButton::SetBusy(bool busy) {
    if (busy == m_busy)
        return;
    m_busy = busy;
    QAccessible::State changed;
    changed.busy = true;
    TellScreenReaders(*this, changed);
    update();
}

void CardButton::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        event->ignore();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat())
            click();
        break;
    default:
        QToolButton::keyPressEvent(event);
    }
}

void CardButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!m_busy && (underMouse() || isDown())) {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Look::AccentLine);
        painter.setBrush(isDown() ? Look::AccentLine : Look::AccentTint);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    }
    if (hasFocus())
        Look::DrawFocusRing(painter, rect(), 4);
    QRect place(QPoint(), iconSize());
    place.moveCenter(rect().center());
    icon().paint(&painter, place, Qt::AlignCenter, m_busy ? QIcon::Disabled : QIcon::Normal);
}
