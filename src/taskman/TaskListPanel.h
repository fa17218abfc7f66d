#pragma once

#include "taskman/TaskList.h"

/// The tasks of one filter as cards.
class CTaskListPanel : public CardPanel {
    Q_OBJECT

public:
    CTaskListPanel(const Console& console, TaskFilter filter);
};
