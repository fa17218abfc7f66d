#pragma once

#include "taskman/TaskList.h"

/// What every page of tasks has: the chosen ones, their states, and cards that show them. `make` and words
/// are missing.
CardSection TaskSection(const LiveCounters& counters, TaskChoice isListed);

/// The tasks of one filter as cards.
class CTaskListPanel : public CardPanel {
    Q_OBJECT

public:
    CTaskListPanel(const Console& console, TaskFilter filter);
};
