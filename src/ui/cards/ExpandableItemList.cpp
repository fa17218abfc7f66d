#include "cards/ExpandableItemList.h"

#include "cards/ExpandableItem.h"
#include "look/Look.h"
#include "page/ActionButton.h"
#include "page/LinkLabel.h"

#include <QKeyEvent>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QRect ToRect(const CardRect& rect, int top) {
    return {static_cast<int>(rect.x), static_cast<int>(rect.y) + top, static_cast<int>(rect.width),
            static_cast<int>(rect.height)};
}

/// Puts a link at its place, wider where its text needs more than the place has.
void Place(LinkLabel& link, QRect rect, bool shown) {
    const int missing = link.sizeHint().width() - rect.width();
    if (missing > 0 && link.alignment() & Qt::AlignHCenter)
        rect.adjust(-missing / 2, 0, missing - missing / 2, 0);
    else if (missing > 0)
        rect.adjust(0, 0, missing, 0);
    link.setGeometry(rect);
    link.setVisible(shown);
}

} // namespace

CExpandableItemList::CExpandableItemList(const Console& console, QWidget* parent)
    : CBrenPanel(console, parent), m_hiddenLink(new LinkLabel({}, this)),
      m_previousLink(new LinkLabel(tr("<a>Previous Page</a>"), this)),
      m_pageLabel(new LinkLabel(u" 0 of 1 "_s, this)),
      m_nextLink(new LinkLabel(tr("<a>Next Page</a>"), this)) {
    m_pageLabel->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    for (LinkLabel* link : {m_previousLink, m_pageLabel, m_nextLink})
        link->setFont(Look::Font(Look::Caption));
    for (LinkLabel* link : {m_hiddenLink, m_previousLink, m_pageLabel, m_nextLink})
        link->hide();
    connect(m_hiddenLink, &LinkLabel::LinkClicked, this, &CExpandableItemList::ShowAll);
    connect(m_previousLink, &LinkLabel::LinkClicked, this, &CExpandableItemList::PreviousPage);
    connect(m_nextLink, &LinkLabel::LinkClicked, this, &CExpandableItemList::NextPage);
}

CExpandableItemList::~CExpandableItemList() = default;

CExpandableItem* CExpandableItemList::AddItem(std::unique_ptr<CExpandableItem> card) {
    if (CardCount() >= MaxCards)
        return nullptr;
    CExpandableItem* added = card.release();
    added->setParent(this);
    added->hide();
    connect(added, &CExpandableItem::Toggled, this, [this, added] { ToggleCard(*added); });
    m_cards.push_back(added);
    EndTabOrder(added->LastStop());
    return added;
}

CExpandableItem* CExpandableItemList::FindCard(const QString& title) const {
    const auto found = std::find_if(m_cards.begin(), m_cards.end(), [&title](const CExpandableItem* card) {
        return card->Title().compare(title, Qt::CaseInsensitive) == 0;
    });
    return found == m_cards.end() ? nullptr : *found;
}

void CExpandableItemList::RemoveCard(CExpandableItem& card) {
    const int index = IndexOf(card);
    if (index < 0)
        return;
    Drop(static_cast<std::size_t>(index));
    RecalcLayout();
}

void CExpandableItemList::RemoveAll() {
    while (!m_cards.empty())
        Drop(m_cards.size() - 1);
    RecalcLayout();
}

/// Takes the card out of the list. It may be at work up the call stack, so it dies a little later.
void CExpandableItemList::Drop(std::size_t index) {
    CExpandableItem* card = m_cards[index];
    m_cards.erase(m_cards.begin() + static_cast<std::ptrdiff_t>(index));
    const bool hadFocus = card->isAncestorOf(focusWidget()) || card == focusWidget();
    if (card == m_expanded)
        Collapse();
    card->disconnect(this);
    card->hide();
    card->deleteLater();
    if (hadFocus && isVisible())
        FocusCard(std::min(static_cast<int>(index), CardCount() - 1));
}

void CExpandableItemList::BeginRefresh() {
    ++m_mark;
    m_added = false;
}

CExpandableItem* CExpandableItemList::Keep(const QString& title,
                                           const std::function<std::unique_ptr<CExpandableItem>()>& make) {
    CExpandableItem* card = FindCard(title);
    if (!card && CardCount() < MaxCards) {
        card = AddItem(make());
        m_added = true;
    }
    if (card)
        card->refreshMark = m_mark;
    return card;
}

bool CExpandableItemList::EndRefresh() {
    return Sweep(m_mark, m_added);
}

bool CExpandableItemList::Sweep(quint32 mark, bool collapse) {
    bool removed = false;
    for (std::size_t index = m_cards.size(); index-- > 0;) {
        if (m_cards[index]->refreshMark != mark) {
            Drop(index);
            removed = true;
        }
    }
    if (removed && collapse && m_expanded)
        Collapse();
    RecalcLayout();
    return removed;
}

void CExpandableItemList::SetGeometryValues(const CardGeometry& geometry) {
    m_geometry = geometry;
    RecalcLayout();
}

void CExpandableItemList::SetEmptyView(QWidget* view, const QMargins& margins) {
    m_emptyView = view;
    m_emptyMargins = margins;
    view->setParent(this);
    view->hide();
}

void CExpandableItemList::SetHeader(QWidget* header) {
    m_header = header;
    header->setParent(this);
    header->lower();
    RecalcLayout();
}

/// Returns where the cards begin.
int CExpandableItemList::PlaceHeader() {
    if (!m_header)
        return 0;
    m_header->setVisible(!m_expanded);
    const int wanted =
        m_header->hasHeightForWidth() ? m_header->heightForWidth(width()) : m_header->sizeHint().height();
    const int height = m_expanded ? 0 : wanted;
    m_header->setGeometry(0, 0, width(), height);
    return height;
}

void CExpandableItemList::RecalcLayout() {
    const int top = PlaceHeader();
    if (m_emptyView) {
        m_emptyView->setGeometry(rect().adjusted(0, top, 0, 0).marginsRemoved(m_emptyMargins));
        m_emptyView->setVisible(m_cards.empty());
    }
    CardLayoutRequest request{m_geometry,
                              static_cast<quint32>(width()),
                              static_cast<quint32>(std::max(0, height() - top)),
                              static_cast<quint32>(CardCount()),
                              m_currentPage,
                              {}};
    if (m_expanded)
        request.expanded = static_cast<quint32>(IndexOf(*m_expanded));
    if (const std::optional<CardLayout> layout = LayOutCards(request))
        Apply(*layout, top);
}

void CExpandableItemList::Apply(const CardLayout& layout, int top) {
    m_cardsPerPage = layout.cardsPerPage;
    m_pageCount = layout.pageCount;
    m_currentPage = layout.currentPage;
    for (std::size_t index = 0; index < m_cards.size(); ++index) {
        if (const std::optional<CardRect> place = layout.PlaceOf(static_cast<quint32>(index))) {
            m_cards[index]->setGeometry(ToRect(*place, top));
            m_cards[index]->show();
        }
    }
    HandFocusOn(layout);
    for (std::size_t index = 0; index < m_cards.size(); ++index)
        if (!layout.PlaceOf(static_cast<quint32>(index)))
            m_cards[index]->hide();
    m_hiddenLink->SetText(
        tr("%1 item(s) hidden, click <a>here</a> to show all items").arg(layout.hiddenCount));
    m_pageLabel->SetText(tr("%1 of %2 Pages").arg(layout.currentPage + 1).arg(layout.pageCount));
    Place(*m_hiddenLink, ToRect(layout.hiddenLink, top), layout.hiddenCount > 0);
    Place(*m_previousLink, ToRect(layout.previousLink, top), layout.showPrevious);
    Place(*m_pageLabel, ToRect(layout.pageLabel, top), layout.showPageLabel);
    Place(*m_nextLink, ToRect(layout.nextLink, top), layout.showNext);
    emit LaidOut();
}

std::vector<CExpandableItem*> CExpandableItemList::CardsInFront() const {
    std::vector<CExpandableItem*> cards;
    std::copy_if(m_cards.begin(), m_cards.end(), std::back_inserter(cards),
                 [](const CExpandableItem* card) { return !card->isHidden(); });
    return cards;
}

/// Who looks at a page that goes looks at the same place of the one that comes.
void CExpandableItemList::HandFocusOn(const CardLayout& layout) {
    const CExpandableItem* card = FocusedCard();
    const QWidget* link = focusWidget();
    const bool linkGoes =
        (link == m_previousLink && !layout.showPrevious) || (link == m_nextLink && !layout.showNext);
    const int index = card ? IndexOf(*card) : linkGoes ? 0 : -1;
    if (index < 0 || layout.shownCount == 0 || layout.PlaceOf(static_cast<quint32>(index)))
        return;
    const quint32 place = static_cast<quint32>(index) % layout.cardsPerPage;
    m_cards[layout.firstShown + std::min(place, layout.shownCount - 1)]->setFocus(Qt::OtherFocusReason);
}

CExpandableItem* CExpandableItemList::FocusedCard() const {
    const QWidget* focus = focusWidget();
    const auto holds = [focus](const CExpandableItem* card) {
        return card == focus || card->isAncestorOf(focus);
    };
    const auto found = focus ? std::find_if(m_cards.begin(), m_cards.end(), holds) : m_cards.end();
    return found == m_cards.end() ? nullptr : *found;
}

void CExpandableItemList::PreviousPage() {
    if (m_currentPage > 0 && !m_expanded)
        GoToPage(m_currentPage - 1);
}

void CExpandableItemList::NextPage() {
    if (m_currentPage + 1 < m_pageCount && !m_expanded)
        GoToPage(m_currentPage + 1);
}

void CExpandableItemList::GoToPage(quint32 page) {
    m_currentPage = page;
    RecalcLayout();
}

void CExpandableItemList::ToggleCard(CExpandableItem& card) {
    const bool expand = &card != m_expanded;
    if (m_expanded)
        Collapse();
    if (expand)
        Expand(card);
}

void CExpandableItemList::ShowAll() {
    if (m_expanded)
        ToggleCard(*m_expanded);
}

void CExpandableItemList::Expand(CExpandableItem& card) {
    m_expanded = &card;
    LeaveHead(true);
    card.SetExpanded(true);
    card.setFocus();
    RecalcLayout();
    card.OnExpanded();
    emit Expanded(card.entryId);
}

/// The links come after all that the expanded card shows, of which some was made after them.
void CExpandableItemList::OrderTabs() {
    QWidget* last = m_expanded;
    for (QWidget* next = last->nextInFocusChain(); next != m_expanded;) {
        QWidget* current = std::exchange(next, next->nextInFocusChain());
        if (m_expanded->isAncestorOf(current)) {
            setTabOrder(last, current);
            last = current;
        }
    }
    EndTabOrder(last);
}

void CExpandableItemList::EndTabOrder(QWidget* last) {
    setTabOrder(last, m_hiddenLink);
    setTabOrder(m_hiddenLink, m_previousLink);
    setTabOrder(m_previousLink, m_nextLink);
}

bool CExpandableItemList::focusNextPrevChild(bool next) {
    if (m_expanded)
        OrderTabs();
    return CBrenPanel::focusNextPrevChild(next);
}

void CExpandableItemList::Collapse() {
    CExpandableItem* card = std::exchange(m_expanded, nullptr);
    const bool hadFocus = card->isAncestorOf(focusWidget());
    card->SetExpanded(false);
    RecalcLayout();
    card->OnCollapsed();
    if (hadFocus)
        card->setFocus();
    LeaveHead(false);
}

void CExpandableItemList::Activate() {
    CBrenPanel::Activate();
    RecalcLayout();
    if (m_expanded)
        m_expanded->OnExpanded();
}

void CExpandableItemList::Deactivate() {
    CBrenPanel::Deactivate();
    if (m_expanded)
        m_expanded->OnCollapsed();
}

void CExpandableItemList::OnPanelClick(const QPoint& position) {
    for (CExpandableItem* card : m_cards) {
        const QRect inside = card->geometry().adjusted(1, 1, 0, 0);
        if (card->isHidden() || !inside.contains(position))
            continue;
        const QPoint onCard = position - card->pos();
        if (onCard.y() < card->TitleBandHeight())
            ToggleCard(*card);
        else
            card->OnBodyClick(onCard);
        return;
    }
}

void CExpandableItemList::resizeEvent(QResizeEvent* event) {
    CBrenPanel::resizeEvent(event);
    RecalcLayout();
}

void CExpandableItemList::keyPressEvent(QKeyEvent* event) {
    CExpandableItem* card = FocusedCard();
    if (card && OnCardKey(*card, event->key()))
        return;
    if (event->key() == Qt::Key_PageUp)
        PreviousPage();
    else if (event->key() == Qt::Key_PageDown)
        NextPage();
    else
        CBrenPanel::keyPressEvent(event);
}

bool CExpandableItemList::OnCardKey(CExpandableItem& card, int key) {
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (!card.hasFocus())
            return false;
        ToggleCard(card);
        return true;
    case Qt::Key_Escape:
        if (!m_expanded)
            return false;
        ShowAll();
        return true;
    default:
        break;
    }
    if (m_expanded)
        return false;
    switch (key) {
    case Qt::Key_Up:
        FocusCard(IndexOf(card) - 1);
        return true;
    case Qt::Key_Down:
        FocusCard(IndexOf(card) + 1);
        return true;
    case Qt::Key_Home:
        FocusCard(0);
        return true;
    case Qt::Key_End:
        FocusCard(CardCount() - 1);
        return true;
    default:
        return false;
    }
}

void CExpandableItemList::FocusCard(int index) {
    if (index < 0 || index >= CardCount())
        return;
    CExpandableItem* card = CardAt(index);
    if (card->isHidden() && m_cardsPerPage > 0)
        GoToPage(static_cast<quint32>(index) / m_cardsPerPage);
    card->setFocus(Qt::OtherFocusReason);
}

int CExpandableItemList::IndexOf(const CExpandableItem& card) const {
    const auto found = std::find(m_cards.begin(), m_cards.end(), &card);
    return found == m_cards.end() ? -1 : static_cast<int>(found - m_cards.begin());
}
