#pragma once

#include "cards/CardPanel.h"
#include "plan/BackupTask.h"

#include <QPointer>

class CBackupItem;
class CEmailDlg;
class FileIndexGuide;

/// The backups of one flavour as cards, and beside them what can be done about backups.
class CBackupTaskList : public CardPanel {
    Q_OBJECT

public:
    CBackupTaskList(const Console& console, BackupFlavour flavour);

private:
    std::vector<FrameAction> SideActions();
    void EditNotification();
    /// Reads the log of the cards in front whose rows have changed, after they have been shown.
    void ReadRuns();
    void ShowOverdue();
    CBackupItem& BackupAt(int index) const;

    BackupFlavour m_flavour;
    FileIndexGuide* m_fileIndex;
    QTimer m_shown; ///< runs out once what is shown has been painted
    PageLoader m_runs;
    QPointer<CEmailDlg> m_emailDlg;
};
