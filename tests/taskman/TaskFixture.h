#pragma once

#include "cards/TaskItem.h"
#include "support/PageFixture.h"
#include "support/TableHand.h"

#include <QTest>

/// A click on the card's action of this caption.
inline void ClickAction(CTaskItem* card, const QString& caption) {
    int action = 0;
    while (action < card->ActionCount() && card->ActionCaption(action) != caption)
        ++action;
    if (action < card->ActionCount())
        QTest::mouseClick(card->childAt(card->ActionRect(action).center()), Qt::LeftButton);
    else
        QTest::qFail(qPrintable(QStringLiteral("there is no action ") + caption), __FILE__, __LINE__);
}
