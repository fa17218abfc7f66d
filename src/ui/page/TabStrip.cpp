#include "page/TabStrip.h"

#include "look/Look.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int Height = 36;

} // namespace

// From the wanted ones to those that need the least room.
const TabStrip::Measures TabStrip::AllMeasures[] = {
    {24, 8, 12}, {20, 6, 10}, {16, 6, 8}, {16, 4, 5}, {0, 0, 12},
};

TabStrip::TabStrip(QWidget* parent) : QTabBar(parent) {
    setIconSize({m_measures->icon, m_measures->icon});
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(true);
    setElideMode(Qt::ElideNone);
    setFont(Look::Font(Look::Body));
    setAttribute(Qt::WA_Hover);
}

void TabStrip::AddPage(int page, const QIcon& icon, const QString& title) {
    int tab = 0;
    while (tab < count() && PageOf(tab) < page)
        ++tab;
    setTabData(insertTab(tab, icon, title), page);
}

int TabStrip::PageOf(int tab) const {
    return tab >= 0 && tab < count() ? tabData(tab).toInt() : -1;
}

void TabStrip::FitInto(int width) {
    const auto fits = [this, width](const Measures& measures) {
        int wanted = 0;
        for (int index = 0; index < count(); ++index)
            wanted += TabWidth(index, measures);
        return wanted <= width;
    };
    m_measures = std::find_if(std::begin(AllMeasures), std::end(AllMeasures) - 1, fits);
    setIconSize({m_measures->icon, m_measures->icon});
}

int TabStrip::TabWidth(int index, const Measures& measures) const {
    QFont bold = font();
    bold.setBold(true);
    const int icon = measures.icon > 0 && !tabIcon(index).isNull() ? measures.icon + measures.gap : 0;
    return 2 * measures.inset + icon + QFontMetrics(bold).horizontalAdvance(tabText(index));
}

QSize TabStrip::tabSizeHint(int index) const {
    return {TabWidth(index, *m_measures), Height};
}

QSize TabStrip::minimumTabSizeHint(int index) const {
    return tabSizeHint(index);
}

void TabStrip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    for (int index = 0; index < count(); ++index) {
        const QRect tab = tabRect(index);
        const bool current = index == currentIndex();
        const bool hovered = tab.contains(mapFromGlobal(QCursor::pos())) && underMouse();
        QRect place = tab.adjusted(m_measures->inset, 0, -m_measures->inset, 0);
        if (const int icon = m_measures->icon; icon > 0 && !tabIcon(index).isNull()) {
            tabIcon(index).paint(&painter, QRect(place.left(), (tab.height() - icon) / 2, icon, icon));
            place.adjust(icon + m_measures->gap, 0, 0, 0);
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
