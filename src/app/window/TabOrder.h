#pragma once

#include <vector>

class QWidget;

/// The widget that the Tab key goes to from `current` (which may be null), or Shift+Tab: through the areas in
/// their order, in each by line and then from the left, and around. Null when none takes the key.
QWidget* NextByTab(const std::vector<QWidget*>& areas, QWidget* current, bool forward);
