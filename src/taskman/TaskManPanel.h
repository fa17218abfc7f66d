#pragma once

#include "lanes/PageLoader.h"
#include "page/TabPanel.h"

class QCheckBox;
struct Console;

/// The task manager: the user's tasks and what the service does right now; in the advanced mode the settings
/// of tasks, the service's own tasks and the completed ones too.
class CTaskManPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit CTaskManPanel(const Console& console);

    void Reload() override;

private:
    void ReadMode();
    void SetMode(bool advanced);
    void WriteMode(bool advanced);

    QCheckBox* m_advanced;
    bool m_modeKnown = false; ///< read, or chosen here
};
