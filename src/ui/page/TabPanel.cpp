#include "page/TabPanel.h"

#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/TabStrip.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr int StripLeft = 8;

} // namespace

CTabPanel::CTabPanel(const Console& console, QWidget* parent)
    : CBrenPanel(console, parent), m_strip(new TabStrip(this)) {
    connect(m_strip, &TabStrip::currentChanged, this, &CTabPanel::OnTabChanged);
}

bool CTabPanel::AddTab(const QString& title, CBrenPanel* page, int image) {
    return Add(title, page, image, true);
}

bool CTabPanel::AddHiddenTab(const QString& title, CBrenPanel* page, int image) {
    return Add(title, page, image, false);
}

bool CTabPanel::Add(const QString& title, CBrenPanel* page, int image, bool shown) {
    if (PageCount() >= MaxPages)
        return false;
    page->setParent(this);
    page->hide();
    page->setAccessibleName(title);
    m_pages.push_back({page, image});
    ShowTabs(PageCount() - 1, PageCount(), shown);
    return true;
}

void CTabPanel::ShowFirstTabs(int count) {
    if (m_current >= count)
        SelectPage(0);
    else if (CurrentPage())
        CurrentPage()->PostReload();
    ShowTabs(count, PageCount(), false);
}

void CTabPanel::ShowAllTabs(int from) {
    ShowTabs(from, PageCount(), true);
    if (m_current < 0)
        SelectPage(0);
    if (CurrentPage())
        CurrentPage()->PostReload();
    update();
}

void CTabPanel::ShowTab(int page, bool shown) {
    if (!shown && m_current == page)
        SelectPage(0);
    ShowTabs(page, page + 1, shown);
    update();
}

/// Gives the pages from `from` to before `end` tabs or takes them away. The strip moves its current tab along
/// while they go.
void CTabPanel::ShowTabs(int from, int end, bool shown) {
    {
        const QSignalBlocker untilAll(m_strip);
        for (int page = from; page < end; ++page) {
            const auto& [panel, image] = m_pages[static_cast<std::size_t>(page)];
            const int tab = TabOf(page);
            if (shown && tab < 0)
                m_strip->AddPage(page, IconRegistry::Icon(image), panel->accessibleName());
            else if (!shown && tab >= 0)
                m_strip->removeTab(tab);
        }
    }
    OnTabChanged(m_strip->currentIndex());
    LayOutPages();
}

/// The page's place in the strip; -1 when it has none.
int CTabPanel::TabOf(int page) const {
    int tab = m_strip->count() - 1;
    while (tab >= 0 && m_strip->PageOf(tab) != page)
        --tab;
    return tab;
}

CBrenPanel* CTabPanel::CurrentPage() const {
    return m_current < 0 ? nullptr : m_pages[static_cast<std::size_t>(m_current)].panel;
}

void CTabPanel::SelectPage(int index) {
    m_strip->setCurrentIndex(TabOf(index));
    OnTabChanged(m_strip->currentIndex());
}

bool CTabPanel::IsTabShown(int index) const {
    return TabOf(index) >= 0;
}

void CTabPanel::SetCorner(QWidget* corner) {
    m_corner = corner;
    m_corner->setParent(this);
    setTabOrder(m_strip, m_corner);
    m_corner->show();
    LayOutPages();
}

void CTabPanel::Activate() {
    CBrenPanel::Activate();
    if (CurrentPage())
        CurrentPage()->Activate();
}

void CTabPanel::Deactivate() {
    if (CurrentPage())
        CurrentPage()->Deactivate();
    CBrenPanel::Deactivate();
}

void CTabPanel::Reload() {
    if (CurrentPage() && CurrentPage()->IsActive())
        CurrentPage()->Reload();
}

void CTabPanel::OnTabChanged(int tab) {
    const int shown = m_strip->PageOf(tab);
    if (shown == m_current)
        return;
    if (CurrentPage())
        CurrentPage()->Deactivate();
    m_current = shown;
    if (IsActive() && CurrentPage())
        CurrentPage()->Activate();
}

void CTabPanel::LayOutPages() {
    const int cornerWidth = m_corner ? m_corner->sizeHint().width() + 2 * Look::PageMargin : 0;
    const int stripHeight = m_strip->sizeHint().height();
    const int stripWidth = std::max(0, width() - StripLeft - cornerWidth);
    m_strip->FitInto(stripWidth);
    m_strip->setGeometry(StripLeft, 0, stripWidth, stripHeight);
    if (m_corner) {
        const QSize size = m_corner->sizeHint();
        m_corner->setGeometry(width() - size.width() - Look::PageMargin - 4,
                              (stripHeight - size.height()) / 2, size.width(), size.height());
    }
    for (const Page& page : m_pages)
        page.panel->setGeometry(0, stripHeight + 1, width(), std::max(0, height() - stripHeight - 1));
}

bool CTabPanel::event(QEvent* event) {
    // The strip asks too when it is laid out; only a corner that wants another room is heard.
    if (event->type() == QEvent::LayoutRequest && m_corner && m_corner->sizeHint() != m_corner->size())
        LayOutPages();
    return CBrenPanel::event(event);
}

void CTabPanel::resizeEvent(QResizeEvent* event) {
    CBrenPanel::resizeEvent(event);
    LayOutPages();
}

void CTabPanel::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(0, m_strip->geometry().bottom() + 1, width(), 1, Look::Line);
}
