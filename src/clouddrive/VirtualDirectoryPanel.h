#pragma once

#include "page/TabPanel.h"

/// The section of the storage accounts: the cloud drive of a desktop, the backup target of a server. Each
/// page has side actions of its own.
class CVirtualDirectoryPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit CVirtualDirectoryPanel(const Console& console);
};
