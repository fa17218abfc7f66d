#pragma once

#include <vector>

class QWidget;

/// What takes the Tab key in the areas, and `also` (which may be null) where that stands in one: area by
/// area, in each by line and then from the left.
std::vector<QWidget*> TabStops(const std::vector<QWidget*>& areas, const QWidget* also = nullptr);

/// The widget that the Tab key goes to from `current` (which may be null), or Shift+Tab: from stop to stop
/// and around. Null when there is none.
QWidget* NextByTab(const std::vector<QWidget*>& areas, QWidget* current, bool forward);
