#pragma once

#include <QAccessibleWidget>

#include <vector>

/// The widgets by line, then from the left, and those that are hidden last. What begins above the middle of a
/// line's first one stands in it.
std::vector<QWidget*> InOrderOfPlace(std::vector<QWidget*> widgets);

/// A part of a window as screen readers meet it: its parts in the order in which they are seen, described by
/// words only. A tool-tip that says the same in markup is no description.
class AccessiblePart : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QString text(QAccessible::Text kind) const override;

private:
    std::vector<QWidget*> Parts() const;
};

/// Has all widgets that the toolkit knows nothing of met as parts, and windows as windows. Once is enough.
void TeachPartsToScreenReaders();
