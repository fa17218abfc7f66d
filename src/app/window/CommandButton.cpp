#include "window/CommandButton.h"

#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QBoxLayout>
#include <QPainter>

#include <algorithm>
#include <optional>

namespace {

constexpr int IconSize = 16;
constexpr int Gap = 8;
constexpr int ToolbarInset = 10;
constexpr int LinkInset = 8;

} // namespace

CCommandButton::CCommandButton(QWidget& owner, const FrameAction& action, CommandButtonKind kind)
    : m_kind(kind) {
    setFocusPolicy(Qt::StrongFocus);
    setFont(Look::Font(Look::Small));
    setSizePolicy(kind == CommandButtonKind::Link ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    Set(owner, action);
    connect(this, &QAbstractButton::clicked, this, [this] {
        const auto run = m_run; // which may replace this button
        if (m_owner && !m_busy && run)
            run();
    });
}

void CCommandButton::Set(QWidget& owner, const FrameAction& action) {
    m_owner = &owner;
    m_run = action.run;
    m_busy = !action.enabled;
    setText(action.caption);
    setAccessibleName(action.caption);
    setIcon(m_kind == CommandButtonKind::Link ? IconRegistry::Icon(action.image, Look::Accent)
                                              : IconRegistry::Icon(action.image));
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

namespace {

std::vector<CCommandButton*> ButtonsOf(const QBoxLayout& layout) {
    std::vector<CCommandButton*> buttons;
    for (int index = 0; index < layout.count(); ++index)
        buttons.push_back(static_cast<CCommandButton*>(layout.itemAt(index)->widget()));
    return buttons;
}

} // namespace

void ReplaceButtons(QBoxLayout& layout, QWidget& owner, const std::vector<FrameAction>& actions,
                    CommandButtonKind kind) {
    const std::vector<CCommandButton*> old = ButtonsOf(layout);
    const bool sameCaptions = std::equal(old.begin(), old.end(), actions.begin(), actions.end(),
                                         [](const CCommandButton* button, const FrameAction& action) {
                                             return button->text() == action.caption;
                                         });
    if (sameCaptions) {
        for (std::size_t index = 0; index < old.size(); ++index)
            old[index]->Set(owner, actions[index]);
        return;
    }
    std::optional<QString> focused;
    for (CCommandButton* button : old) {
        if (button->hasFocus())
            focused = button->text();
        layout.removeWidget(button);
    }
    CCommandButton* next = nullptr;
    for (const FrameAction& action : actions) {
        auto* button = new CCommandButton(owner, action, kind);
        layout.addWidget(button);
        if (!next || action.caption == focused)
            next = button;
    }
    if (focused && next) {
        next->show();
        next->setFocus();
    }
    // A button may be replaced by its own click, so it goes at the next turn of the event loop.
    for (CCommandButton* button : old) {
        button->hide();
        button->deleteLater();
    }
}
