#pragma once

#include "page/TabPanel.h"

/// The section of the folders that are kept in step across computers.
class CSyncPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit CSyncPanel(const Console& console);
};
