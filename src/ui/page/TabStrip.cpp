#include "page/TabStrip.h"

#include "look/Look.h"

#include <QPainter>

namespace {

constexpr int Inset = 12;
constexpr int IconSize = 24;
constexpr int IconGap = 8;
constexpr int Height = 36;

} // namespace

TabStrip::TabStrip(QWidget* parent) : QTabBar(parent) {
    setIconSize({IconSize, IconSize});
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(true);
    setElideMode(Qt::ElideNone);
    setFont(Look::Font(Look::Body));
    setAttribute(Qt::WA_Hover);
}

void TabStrip::FitInto(int width) {
    int wanted = 0;
    for (int index = 0; index < count(); ++index)
        wanted += isTabVisible(index) ? TabWidth(index, true) : 0;
    const int icon = wanted <= width ? IconSize : 0;
    setIconSize({icon, icon});
}

int TabStrip::TabWidth(int index, bool withIcon) const {
    QFont bold = font();
    bold.setBold(true);
    const int icon = withIcon && !tabIcon(index).isNull() ? IconSize + IconGap : 0;
    return 2 * Inset + icon + QFontMetrics(bold).horizontalAdvance(tabText(index));
}

QSize TabStrip::tabSizeHint(int index) const {
    return {TabWidth(index, !iconSize().isEmpty()), Height};
}

QSize TabStrip::minimumTabSizeHint(int index) const {
    return tabSizeHint(index);
}

void TabStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    for (int index = 0; index < count(); ++index) {
        if (!isTabVisible(index))
            continue;
        const QRect tab = tabRect(index);
        const bool current = index == currentIndex();
        const bool hovered = tab.contains(mapFromGlobal(QCursor::pos())) && underMouse();
        QRect place = tab.adjusted(Inset, 0, -Inset, 0);
        if (!iconSize().isEmpty() && !tabIcon(index).isNull()) {
            tabIcon(index).paint(&painter,
                                 QRect(place.left(), (tab.height() - IconSize) / 2, IconSize, IconSize));
            place.adjust(IconSize + IconGap, 0, 0, 0);
        }
        QFont text = font();
        text.setBold(current);
        painter.setFont(text);
        painter.setPen(current || hovered ? Look::Ink : Look::Secondary);
        painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, tabText(index));
        if (current)
            painter.fillRect(QRect(tab.left(), tab.bottom() - 1, tab.width(), 2), Look::Accent);
        if (current && hasFocus())
            Look::DrawFocusRing(painter, QRectF(tab).adjusted(2, 2, -2, -4));
    }
}
