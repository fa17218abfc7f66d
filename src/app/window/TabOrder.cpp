#include "window/TabOrder.h"

#include <QWidget>

#include <algorithm>

namespace {

/// The child widgets by line, then from the left. What begins above the middle of a line's first one stands
/// in it.
std::vector<QWidget*> ChildrenInOrder(const QWidget& parent) {
    std::vector<QWidget*> children;
    for (QObject* child : parent.children()) {
        auto* widget = qobject_cast<QWidget*>(child);
        if (widget && !widget->isWindow() && !widget->isHidden())
            children.push_back(widget);
    }
    std::stable_sort(children.begin(), children.end(),
                     [](const QWidget* a, const QWidget* b) { return a->y() < b->y(); });
    for (auto line = children.begin(); line != children.end();) {
        const int middle = (*line)->geometry().center().y();
        const auto end = std::find_if(line + 1, children.end(),
                                      [middle](const QWidget* next) { return next->y() >= middle; });
        std::stable_sort(line, end, [](const QWidget* a, const QWidget* b) { return a->x() < b->x(); });
        line = end;
    }
    return children;
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
