#include "backup/BackupPanel.h"

#include "backup/BackupTaskList.h"
#include "look/IconRegistry.h"
#include "page/WebPagePanel.h"
#include "zep/SysInfo.h"

using namespace Qt::Literals::StringLiterals;

CBackupPanel::CBackupPanel(const Console& console) : CTabPanel(console) {
    const bool backupServer = IsBrQBSMode();
    if (!backupServer)
        AddTab(tr("Backup Welcome Page"), new WebPagePanel(console, u"backup-intro.html"_s), InformationIcon);
    AddTab(tr("Mirrored Backups"), new CBackupTaskList(console, BackupFlavour::Mirrored), BackupIcon);
    if (!backupServer)
        AddTab(tr("Snapshot Backups"), new CBackupTaskList(console, BackupFlavour::Snapshot),
               FileVersionsIcon);
}
