#include "cards/TaskItem.h"

#include "look/IconRegistry.h"
#include "page/ActionButton.h"

namespace {

/// The first button opens the card.
std::size_t ButtonOf(int action) {
    return static_cast<std::size_t>(action) + 1;
}

} // namespace

int CTaskItem::AddAction(const QString& caption, int image, std::function<void()> run) {
    AddButton({caption, IconRegistry::Icon(image), std::move(run)});
    return m_count++;
}

void CTaskItem::SetAction(int index, const QString& caption, int image) {
    if (ActionCaption(index) != caption)
        SetButton(ButtonOf(index), caption, IconRegistry::Icon(image));
}

QString CTaskItem::ActionCaption(int index) const {
    return ButtonAt(ButtonOf(index)).caption;
}

void CTaskItem::EnableAction(int index, bool enabled, const QString& why) {
    SetButtonBusy(ButtonOf(index), !enabled, why);
}

void CTaskItem::ShowAction(int index, bool shown) {
    SetButtonShown(ButtonOf(index), shown);
}

QRect CTaskItem::ActionRect(int index) const {
    const ActionButton* button = ButtonAt(ButtonOf(index)).made;
    return button ? QRect(button->mapTo(this, QPoint()), button->size()) : QRect();
}
