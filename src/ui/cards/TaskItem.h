#pragma once

#include "cards/ExpandableItem.h"

/// A card with a row of actions.
class CTaskItem : public CExpandableItem {
    Q_OBJECT

public:
    using CExpandableItem::CExpandableItem;

    /// Adds an action at the left of the others; `run` is called on each click. Returns its index.
    int AddAction(const QString& caption, int image, std::function<void()> run);

    /// What the action is from now on. `index` is one that AddAction returned, here and below.
    void SetAction(int index, const QString& caption, int image);
    QString ActionCaption(int index) const;

    /// As while its command is under way: a disabled action swallows clicks. Its tool-tip says `why`.
    void EnableAction(int index, bool enabled, const QString& why = {});
    /// One that is not shown cannot be reached.
    void ShowAction(int index, bool shown);
    int ActionCount() const { return m_count; }

    /// Where the action stands, in the card's coordinates; nowhere before the card is shown.
    QRect ActionRect(int index) const;

private:
    int m_count = 0;
};
