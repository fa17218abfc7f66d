#include "window/ActionButtons.h"

#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QBoxLayout>

#include <algorithm>
#include <optional>

namespace {

std::vector<ActionButton*> ButtonsOf(const QBoxLayout& layout) {
    std::vector<ActionButton*> buttons;
    buttons.reserve(static_cast<size_t>(layout.count()));
    for (int index = 0; index < layout.count(); ++index)
        buttons.push_back(static_cast<ActionButton*>(layout.itemAt(index)->widget()));
    return buttons;
}

void Show(const FrameAction& action, ActionButton& button, QWidget& owner, ActionButton::Kind kind) {
    const QColor colour = kind == ActionButton::Kind::Link ? Look::Accent : QColor();
    button.Set(action.caption, IconRegistry::Icon(action.image, colour));
    button.SetBusy(!action.enabled);
    button.disconnect(SIGNAL(Clicked()));
    if (action.run)
        QObject::connect(&button, &ActionButton::Clicked, &owner, action.run);
}

} // namespace

void ShowActions(QBoxLayout& layout, QWidget& owner, const std::vector<FrameAction>& actions,
                 ActionButton::Kind kind) {
    const std::vector<ActionButton*> old = ButtonsOf(layout);
    const bool sameCaptions = std::equal(old.begin(), old.end(), actions.begin(), actions.end(),
                                         [](const ActionButton* button, const FrameAction& action) {
                                             return button->text() == action.caption;
                                         });
    if (sameCaptions) {
        for (std::size_t index = 0; index < old.size(); ++index)
            Show(actions[index], *old[index], owner, kind);
        return;
    }
    std::optional<QString> focused;
    for (ActionButton* button : old) {
        if (button->window()->focusWidget() == button)
            focused = button->text();
        layout.removeWidget(button);
    }
    ActionButton* next = nullptr;
    for (const FrameAction& action : actions) {
        auto* button = new ActionButton(kind);
        Show(action, *button, owner, kind);
        layout.addWidget(button);
        if (!next || action.caption == focused)
            next = button;
    }
    if (focused && next) {
        next->show();
        next->setFocus();
    }
    // A button may be replaced by its own click, so it goes at the next turn of the event loop.
    for (ActionButton* button : old) {
        button->hide();
        button->deleteLater();
    }
}
