#include "window/TabOrder.h"

#include "look/AccessiblePart.h"

#include <QWidget>

#include <algorithm>

namespace {

std::vector<QWidget*> ChildrenInOrder(const QWidget& parent) {
    std::vector<QWidget*> children;
    for (QObject* child : parent.children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (widget && !widget->isWindow() && !widget->isHidden())
            children.push_back(widget);
    }
    return InOrderOfPlace(std::move(children));
}

void Collect(QWidget& widget, const QWidget* current, std::vector<QWidget*>& stops) {
    if (widget.isHidden() || !widget.isEnabled())
        return;
    const bool takesTab = widget.focusPolicy() & Qt::TabFocus && !widget.focusProxy();
    if (takesTab || &widget == current)
        stops.push_back(&widget);
    for (QWidget* child : ChildrenInOrder(widget))
        Collect(*child, current, stops);
}

} // namespace

std::vector<QWidget*> TabStops(const std::vector<QWidget*>& areas, const QWidget* also) {
    std::vector<QWidget*> stops;
    for (QWidget* area : areas)
        Collect(*area, also, stops);
    return stops;
}

QWidget* NextByTab(const std::vector<QWidget*>& areas, QWidget* current, bool forward) {
    std::vector<QWidget*> stops = TabStops(areas, current);
    if (!forward)
        std::reverse(stops.begin(), stops.end());
    if (stops.empty())
        return nullptr;
    const auto at = std::find(stops.begin(), stops.end(), current);
    return at == stops.end() || at + 1 == stops.end() ? stops.front() : *(at + 1);
}
