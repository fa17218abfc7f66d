#include "look/AccessiblePart.h"

#include <QWidget>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QAccessibleInterface* Make(const QString& key, QObject* object) {
    if (key != "QWidget"_L1)
        return nullptr;
    auto* widget = static_cast<QWidget*>(object);
    return new AccessiblePart(widget, widget->isWindow() ? QAccessible::Window : QAccessible::Client);
}

} // namespace

std::vector<QWidget*> InOrderOfPlace(std::vector<QWidget*> widgets) {
    const auto hidden = std::stable_partition(widgets.begin(), widgets.end(),
                                              [](const QWidget* widget) { return !widget->isHidden(); });
    std::stable_sort(widgets.begin(), hidden,
                     [](const QWidget* a, const QWidget* b) { return a->y() < b->y(); });
    for (auto line = widgets.begin(); line != hidden;) {
        const int middle = (*line)->geometry().center().y();
        const auto end =
            std::find_if(line + 1, hidden, [middle](const QWidget* next) { return next->y() >= middle; });
        std::stable_sort(line, end, [](const QWidget* a, const QWidget* b) { return a->x() < b->x(); });
        line = end;
    }
    return widgets;
}

std::vector<QWidget*> AccessiblePart::Parts() const {
    std::vector<QWidget*> parts;
    parts.reserve(std::size_t(childCount()));
    for (int index = 0; index < childCount(); ++index)
        if (QAccessibleInterface* child = QAccessibleWidget::child(index))
            parts.push_back(static_cast<QWidget*>(child->object()));
    return InOrderOfPlace(std::move(parts));
}

QAccessibleInterface* AccessiblePart::child(int index) const {
    const std::vector<QWidget*> parts = Parts();
    return index < 0 || std::size_t(index) >= parts.size()
               ? nullptr
               : QAccessible::queryAccessibleInterface(parts[std::size_t(index)]);
}

int AccessiblePart::indexOfChild(const QAccessibleInterface* child) const {
    const std::vector<QWidget*> parts = Parts();
    const auto found = child ? std::find(parts.begin(), parts.end(), child->object()) : parts.end();
    return found == parts.end() ? -1 : int(found - parts.begin());
}

QString AccessiblePart::text(QAccessible::Text kind) const {
    return kind == QAccessible::Description ? widget()->accessibleDescription()
                                            : QAccessibleWidget::text(kind);
}

void TeachPartsToScreenReaders() {
    static const bool once = (QAccessible::installFactory(Make), true);
    Q_UNUSED(once)
}
