#pragma once

#include "lanes/PageLoader.h"
#include "page/TabPanel.h"

class QCheckBox;
class QLabel;
struct Console;
struct ServiceAnswer;

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
    void EndWriteMode(const ServiceAnswer& answer);

    QCheckBox* m_advanced;
    QLabel* m_unsaved;        ///< stands beside the box until it is saved
    bool m_modeKnown = false; ///< read, or chosen here
};
