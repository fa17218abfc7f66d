#pragma once

#include "cards/CardPanel.h"
#include "plan/BackupTask.h"

class FileIndexGuide;

/// The backups of one flavour as cards, and beside them what can be done about backups.
class CBackupTaskList : public CardPanel {
    Q_OBJECT

public:
    CBackupTaskList(const Console& console, BackupFlavour flavour);

private:
    std::vector<FrameAction> SideActions();

    BackupFlavour m_flavour;
    FileIndexGuide* m_fileIndex;
};
