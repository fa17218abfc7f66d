#pragma once

#include "cards/ExpandableItemList.h"
#include "cards/TaskItem.h"
#include "page/ActionButton.h"
#include "page/LinkLabel.h"
#include "support/ConsoleFixture.h"
#include "support/TestMain.h"

/// A card that counts how often it was shown live.
class CountingCard : public CTaskItem {
public:
    using CTaskItem::CTaskItem;

    void OnExpanded() override { ++expansions; }
    void OnCollapsed() override { ++collapses; }
    void OnBodyClick(const QPoint&) override { ++bodyClicks; }

    int expansions = 0;
    int collapses = 0;
    int bodyClicks = 0;
};

class TestList : public ConsoleFixture<>, public CExpandableItemList {
public:
    TestList() : CExpandableItemList(console) {
        SetGeometryValues({20, 10, 20, 0, 100, 0});
        SetHelp(QStringLiteral("list"));
        resize(800, 400);
        Activate();
        activateWindow();
    }

    /// 3 cards a page.
    void Refresh(const QStringList& titles) {
        BeginRefresh();
        for (const QString& title : titles)
            Keep(title, [&title] { return std::make_unique<CountingCard>(title); });
        removed = EndRefresh();
    }

    CountingCard* Card(int index) const { return static_cast<CountingCard*>(CardAt(index)); }

    QStringList Shown() const {
        QStringList titles;
        for (int index = 0; index < CardCount(); ++index)
            if (CardAt(index)->isVisible())
                titles.append(CardAt(index)->Title());
        return titles;
    }

    /// The texts of the visible links and labels, markup left out.
    QStringList Links() const {
        QStringList texts;
        for (const LinkLabel* link : findChildren<LinkLabel*>())
            if (link->isVisible())
                texts.append(link->accessibleName());
        return texts;
    }

    void ClickLink(const QString& text) {
        for (LinkLabel* link : findChildren<LinkLabel*>())
            if (link->isVisible() && link->accessibleName().contains(text))
                emit link->LinkClicked(0);
    }

    bool removed = false;
};

inline QStringList Titles(int count) {
    QStringList titles;
    for (int number = 1; number <= count; ++number)
        titles.append(QStringLiteral("Card %1").arg(number));
    return titles;
}
