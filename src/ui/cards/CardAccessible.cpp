#include "cards/CardAccessible.h"

#include "cards/ExpandableItem.h"
#include "cards/ExpandableItemList.h"
#include "page/ActionButton.h"

#include <QAccessibleWidget>
#include <QContextMenuEvent>

namespace {

class AccessibleCard : public QAccessibleWidget {
public:
    explicit AccessibleCard(CExpandableItem& card)
        : QAccessibleWidget(&card, QAccessible::ListItem), m_card(card) {}

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

class AccessibleCardButton : public QAccessibleWidget {
public:
    explicit AccessibleCardButton(ActionButton& button)
        : QAccessibleWidget(&button, QAccessible::Button), m_button(button) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.busy = m_button.IsBusy();
        return state;
    }

    /// Its tool-tip says the same as its name, in markup.
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Description ? m_button.accessibleDescription()
                                                : QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override { return QAccessibleWidget::actionNames() << pressAction(); }

    void doAction(const QString& action) override {
        if (action == pressAction())
            m_button.click();
        else
            QAccessibleWidget::doAction(action);
    }

private:
    ActionButton& m_button;
};

QAccessibleInterface* Make(const QString&, QObject* object) {
    if (auto* card = qobject_cast<CExpandableItem*>(object))
        return new AccessibleCard(*card);
    if (auto* button = qobject_cast<ActionButton*>(object))
        return new AccessibleCardButton(*button);
    if (auto* list = qobject_cast<CExpandableItemList*>(object))
        return new QAccessibleWidget(list, QAccessible::List);
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
