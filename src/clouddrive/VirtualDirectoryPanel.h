#pragma once

#include "page/TabPanel.h"

class CVDirListPanel;
class VDirCommands;

/// The section of the storage accounts: the cloud drive of a desktop, the backup target of a server.
class CVirtualDirectoryPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit CVirtualDirectoryPanel(const Console& console);

    void ShowQuota();
    /// Has the profile encrypted or no longer.
    void EditProfileEncryption();
    VDirCommands& Directories();

private:
    CVDirListPanel* m_list;
};
