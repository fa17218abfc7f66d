#include "syncfolders/SyncPanel.h"

#include "look/IconRegistry.h"
#include "page/WebPagePanel.h"
#include "syncfolders/DropFolderList.h"
#include "syncfolders/DropFolderSettings.h"

using namespace Qt::Literals::StringLiterals;

CSyncPanel::CSyncPanel(const Console& console) : CTabPanel(console) {
    AddTab(tr("Welcome"), new WebPagePanel(console, u"dropfolder_welcome.html"_s), InformationIcon);
    AddTab(tr("Cloud Sync Folders"), new CDropFolderList(console), SyncIcon);
    AddTab(tr("Cloud Sync Folder Settings"), new CDropFolderSettings(console), SettingsIcon);
}
