#include "backup/BackupPanel.h"

#include "backup/BackupSettingsPanel.h"
#include "backup/BackupTaskList.h"
#include "look/IconRegistry.h"
#include "page/WebPagePanel.h"
#include "zep/SysInfo.h"

using namespace Qt::Literals::StringLiterals;

CBackupPanel::CBackupPanel(const Console& console) : CTabPanel(console) {
    const bool backupServer = IsBrQBSMode();
    auto* settings = new BackupSettingsPanel(console);
    const auto list = [&](BackupFlavour flavour) {
        auto* made = new CBackupTaskList(console, flavour);
        connect(made, &CBackupTaskList::Expanded, settings, &BackupSettingsPanel::Prefer);
        return made;
    };
    if (!backupServer)
        AddTab(tr("Backup Welcome Page"), new WebPagePanel(console, u"backup-intro.html"_s), InformationIcon);
    AddTab(tr("Mirrored Backups"), list(BackupFlavour::Mirrored), BackupIcon);
    if (!backupServer)
        AddTab(tr("Snapshot Backups"), list(BackupFlavour::Snapshot), FileVersionsIcon);
    AddTab(tr("Backup Settings"), settings, TaskSettingsIcon);
}
