#include "cards/TaskItem.h"

#include "look/IconRegistry.h"
#include "page/ActionButton.h"

int CTaskItem::AddAction(const QString& caption, int image, std::function<void()> run) {
    ActionButton* action = AddButton(caption, IconRegistry::Icon(image));
    connect(action, &ActionButton::Clicked, this, std::move(run));
    m_actions.push_back(action);
    return ActionCount() - 1;
}

void CTaskItem::SetAction(int index, const QString& caption, int image) {
    ActionButton* action = m_actions.at(static_cast<std::size_t>(index));
    if (action->accessibleName() != caption)
        action->Set(caption, IconRegistry::Icon(image));
}

QString CTaskItem::ActionCaption(int index) const {
    return m_actions.at(static_cast<std::size_t>(index))->accessibleName();
}

void CTaskItem::EnableAction(int index, bool enabled, const QString& why) {
    m_actions.at(static_cast<std::size_t>(index))->SetBusy(!enabled, why);
}

QRect CTaskItem::ActionRect(int index) const {
    const ActionButton* action = m_actions.at(static_cast<std::size_t>(index));
    return {action->mapTo(this, QPoint()), action->size()};
}
