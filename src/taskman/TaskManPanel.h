#pragma once

#include "page/TabPanel.h"

class ModeBox;

/// The task manager: the user's tasks and what the service does right now; in the advanced mode the settings
/// of tasks, the service's own tasks and the completed ones too.
class CTaskManPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit CTaskManPanel(const Console& console);

    void Reload() override;

private:
    ModeBox* m_mode;
};
