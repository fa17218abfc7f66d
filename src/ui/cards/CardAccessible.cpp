#include "cards/CardAccessible.h"

#include "cards/ExpandableItem.h"
#include "cards/ExpandableItemList.h"
#include "look/AccessiblePart.h"

#include <QContextMenuEvent>

namespace {

class AccessibleCard : public AccessiblePart {
public:
    explicit AccessibleCard(CExpandableItem& card)
        : AccessiblePart(&card, QAccessible::ListItem), m_card(card) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = m_card.IsExpanded();
        state.collapsed = !m_card.IsExpanded();
        return state;
    }

    QStringList actionNames() const override {
        return QAccessibleWidget::actionNames() << pressAction() << showMenuAction();
    }

    void doAction(const QString& action) override {
        if (action == pressAction()) {
            emit m_card.Toggled();
        } else if (action == showMenuAction()) {
            QContextMenuEvent asks(QContextMenuEvent::Keyboard, {}, m_card.mapToGlobal(QPoint()));
            QCoreApplication::sendEvent(&m_card, &asks);
        } else {
            QAccessibleWidget::doAction(action);
        }
    }

private:
    CExpandableItem& m_card;
};

QAccessibleInterface* Make(const QString&, QObject* object) {
    if (auto* card = qobject_cast<CExpandableItem*>(object))
        return new AccessibleCard(*card);
    if (auto* list = qobject_cast<CExpandableItemList*>(object))
        return new AccessiblePart(list, QAccessible::List);
    return nullptr;
}

} // namespace

void TeachCardsToScreenReaders() {
    static const bool once = (QAccessible::installFactory(Make), true);
    Q_UNUSED(once)
}

void TellScreenReaders(QWidget& widget, QAccessible::State changed) {
    QAccessibleStateChangeEvent event(&widget, changed);
    QAccessible::updateAccessibility(&event);
}
