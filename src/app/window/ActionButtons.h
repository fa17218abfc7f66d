#pragma once

#include "page/ActionButton.h"
#include "page/MainFrame.h"

class QBoxLayout;

/// Fills the layout with buttons for the actions in place of those that it holds. Buttons of the same
/// captions stay where they are. The focus of one that goes is given to the new one of its caption, or to the
/// first.
void ShowActions(QBoxLayout& layout, QWidget& owner, const std::vector<FrameAction>& actions,
                 ActionButton::Kind kind);
