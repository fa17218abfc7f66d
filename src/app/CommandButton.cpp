#include "app/CommandButton.h"

#include "ui/BrenPanel.h"
#include "ui/IconRegistry.h"
#include "ui/Look.h"

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
    setEnabled(action.enabled);
    setIcon(kind == CommandButtonKind::Link ? IconRegistry::Icon(action.image, Look::Accent)
                                            : IconRegistry::Icon(action.image));
    setFocusPolicy(Qt::StrongFocus);
    setFont(Look::Font(Look::Small));
    setSizePolicy(kind == CommandButtonKind::Link ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
    connect(this, &QAbstractButton::clicked, this, [this] {
        if (m_panel)
            m_panel->OnCommand(m_command);
    });
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
    const bool touched = isEnabled() && (underMouse() || isDown());
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
        icon().paint(&painter, iconArea, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
        area.setLeft(iconArea.right() + 1 + Gap);
    }
    const QColor ink = link ? Look::Accent : Look::Ink;
    painter.setPen(isEnabled() ? ink : palette().color(QPalette::Disabled, QPalette::ButtonText));
    painter.drawText(area, Qt::AlignVCenter, fontMetrics().elidedText(text(), Qt::ElideRight, area.width()));
    if (hasFocus())
        Look::DrawFocusRing(painter, rect());
}

void ReplaceButtons(QBoxLayout& layout, CBrenPanel& panel, const std::vector<FrameAction>& actions,
                    CommandButtonKind kind) {
    while (QLayoutItem* item = layout.takeAt(0)) {
        // A button may be replaced by its own click, so it goes at the next turn of the event loop.
        if (QWidget* button = item->widget()) {
            button->hide();
            button->deleteLater();
        }
        delete item;
    }
    for (const FrameAction& action : actions)
        layout.addWidget(new CCommandButton(panel, action, kind));
}

void EnableButtons(const QBoxLayout& layout, int command, bool enabled) {
    for (int index = 0; index < layout.count(); ++index) {
        auto* button = qobject_cast<CCommandButton*>(layout.itemAt(index)->widget());
        if (button && button->CommandNumber() == command)
            button->setEnabled(enabled);
    }
}
