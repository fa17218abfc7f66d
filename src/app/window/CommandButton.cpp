#include "window/CommandButton.h"

#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/BrenPanel.h"

#include <QBoxLayout>
#include <QPainter>

namespace {

constexpr int IconSize = 16;
constexpr int Gap = 8;
constexpr int ToolbarInset = 10;
constexpr int LinkInset = 8;

} // namespace

CCommandButton::CCommandButton(CBrenPanel& panel, const FrameAction& action, CommandButtonKind kind)
    : m_panel(&panel), m_command(action.command), m_kind(kind) {
    setText(action.caption);
    setAccessibleName(action.caption);
    SetBusy(!action.enabled);
    setIcon(kind == CommandButtonKind::Link ? IconRegistry::Icon(action.image, Look::Accent)
                                            : IconRegistry::Icon(action.image));
    setFocusPolicy(Qt::StrongFocus);
    setFont(Look::Font(Look::Small));
    setSizePolicy(kind == CommandButtonKind::Link ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractButton::clicked, this, [this] {
        if (m_panel && !m_busy)
            m_panel->OnCommand(m_command);
    });
}

void CCommandButton::SetBusy(bool busy) {
    m_busy = busy;
    update();
}

int CCommandButton::Inset() const {
    return m_kind == CommandButtonKind::Link ? LinkInset : ToolbarInset;
}

QSize CCommandButton::sizeHint() const {
    const int iconWidth = icon().isNull() ? 0 : IconSize + Gap;
    return {2 * Inset() + iconWidth + QFontMetrics(font()).size(Qt::TextSingleLine, text()).width() + 2,
            CommandButtonHeight};
}

void CCommandButton::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const bool link = m_kind == CommandButtonKind::Link;
    const bool touched = !m_busy && (underMouse() || isDown());
    painter.setRenderHint(QPainter::Antialiasing);
    if (!link || touched) {
        painter.setPen(link ? QPen(Qt::NoPen) : QPen(touched ? Look::AccentLine : Look::Line));
        painter.setBrush(touched ? Look::AccentTint : Look::Paper);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Look::CornerRadius,
                                Look::CornerRadius);
    }
    QRect area = rect().adjusted(Inset(), 0, -Inset(), 0);
    if (!icon().isNull()) {
        const QRect iconArea(area.left(), (height() - IconSize) / 2, IconSize, IconSize);
        icon().paint(&painter, iconArea, Qt::AlignCenter, m_busy ? QIcon::Disabled : QIcon::Normal);
        area.setLeft(iconArea.right() + 1 + Gap);
    }
    const QColor ink = link ? Look::Accent : Look::Ink;
    painter.setPen(m_busy ? palette().color(QPalette::Disabled, QPalette::ButtonText) : ink);
    painter.drawText(area, Qt::AlignVCenter, fontMetrics().elidedText(text(), Qt::ElideRight, area.width()));
    if (hasFocus())
        Look::DrawFocusRing(painter, rect());
}

void ReplaceButtons(QBoxLayout& layout, CBrenPanel& panel, const std::vector<FrameAction>& actions,
                    CommandButtonKind kind) {
    std::optional<int> focused;
    std::vector<QWidget*> old;
    while (QLayoutItem* item = layout.takeAt(0)) {
        if (auto* button = qobject_cast<CCommandButton*>(item->widget())) {
            if (button->hasFocus())
                focused = button->CommandNumber();
            old.push_back(button);
        }
        delete item;
    }
    CCommandButton* next = nullptr;
    for (const FrameAction& action : actions) {
        auto* button = new CCommandButton(panel, action, kind);
        layout.addWidget(button);
        if (!next || action.command == focused)
            next = button;
    }
    if (focused && next) {
        next->show();
        next->setFocus();
    }
    // A button may be replaced by its own click, so it goes at the next turn of the event loop.
    for (QWidget* button : old) {
        button->hide();
        button->deleteLater();
    }
}

void EnableButtons(const QBoxLayout& layout, int command, bool enabled) {
    for (int index = 0; index < layout.count(); ++index) {
        auto* button = qobject_cast<CCommandButton*>(layout.itemAt(index)->widget());
        if (button && button->CommandNumber() == command)
            button->SetBusy(!enabled);
    }
}
