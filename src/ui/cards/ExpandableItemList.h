#pragma once

#include "cards/CardLayout.h"
#include "page/BrenPanel.h"

#include <QMargins>

#include <functional>
#include <memory>
#include <vector>

class CExpandableItem;
class LinkLabel;

/// A page of up to 100 cards, one below the other in pages; an expanded card has the list for itself.
class CExpandableItemList : public CBrenPanel {
    Q_OBJECT

public:
    static constexpr int MaxCards = 100;

    explicit CExpandableItemList(const Console& console, QWidget* parent = nullptr);
    ~CExpandableItemList() override;

    /// Adds a card at the end without laying out. Refuses it, which deletes it, when the list is full: null.
    CExpandableItem* AddItem(std::unique_ptr<CExpandableItem> card);

    int CardCount() const { return static_cast<int>(m_cards.size()); }
    CExpandableItem* CardAt(int index) const { return m_cards.at(static_cast<std::size_t>(index)); }
    CExpandableItem* FindCard(const QString& title) const; ///< the first, ignoring case; null for none
    void RemoveCard(CExpandableItem& card);
    void RemoveAll();

    /// A refresh: for each entry of fresh data `Keep`, then `EndRefresh`. Keep finds the entry's card or adds
    /// the one that is made; null when the list is full. EndRefresh removes the cards that were not kept and,
    /// when cards were added too, collapses the expanded one. True when cards were removed.
    void BeginRefresh();
    CExpandableItem* Keep(const QString& title,
                          const std::function<std::unique_ptr<CExpandableItem>()>& make);
    bool EndRefresh();

    /// Removes the cards of another mark. See EndRefresh, which calls it.
    bool Sweep(quint32 mark, bool collapse);

    void SetGeometryValues(const CardGeometry& geometry);
    void RecalcLayout();

    void PreviousPage();
    void NextPage();
    int CurrentPage() const { return static_cast<int>(m_currentPage); } ///< from 0
    int PageCount() const { return static_cast<int>(m_pageCount); }

    CExpandableItem* ExpandedCard() const { return m_expanded; }
    /// Expands a card, or collapses the expanded one.
    void ToggleCard(CExpandableItem& card);
    void ShowAll();

    void Activate() override;
    void Deactivate() override;

    /// Shown, that far inside the list's edges, while there is no card. The list owns it.
    void SetEmptyView(QWidget* view, const QMargins& margins);

    /// Stands above the cards while none is expanded, as high as it wants to be. The list owns it. Call
    /// RecalcLayout when that has changed.
    void SetHeader(QWidget* header);

    /// The cards that are shown now: those of the page, or the expanded one.
    std::vector<CExpandableItem*> CardsInFront() const;

signals:
    /// Other cards may be in front, or show something else.
    void LaidOut();
    void Expanded(const QString& entryId);

protected:
    /// Gives the card the focus, and turns to its page where needed. Nothing for an index beyond the cards.
    void FocusCard(int index);

    void OnPanelClick(const QPoint& position) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void Expand(CExpandableItem& card);
    void OrderTabs();
    void EndTabOrder(QWidget* last);
    /// What a key means to a card that it was pressed in; false: nothing.
    bool OnCardKey(CExpandableItem& card, int key);
    CExpandableItem* FocusedCard() const;
    void HandFocusOn(const CardLayout& layout);
    void Collapse();
    void Drop(std::size_t index);
    void GoToPage(quint32 page);
    void Apply(const CardLayout& layout, int top);
    int PlaceHeader();
    int IndexOf(const CExpandableItem& card) const;

    std::vector<CExpandableItem*> m_cards;
    CardGeometry m_geometry;
    CExpandableItem* m_expanded = nullptr;
    LinkLabel* m_hiddenLink;
    LinkLabel* m_previousLink;
    LinkLabel* m_pageLabel;
    LinkLabel* m_nextLink;
    QWidget* m_header = nullptr;
    QWidget* m_emptyView = nullptr;
    QMargins m_emptyMargins;
    quint32 m_cardsPerPage = 0;
    quint32 m_pageCount = 0;
    quint32 m_currentPage = 0;
    quint32 m_mark = 0;
    bool m_added = false;
};
