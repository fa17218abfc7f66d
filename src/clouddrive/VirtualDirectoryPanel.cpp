#include "clouddrive/VirtualDirectoryPanel.h"

#include "clouddrive/CloudDriveSettings.h"
#include "clouddrive/FolderLists.h"
#include "clouddrive/VDirListPanel.h"
#include "look/IconRegistry.h"

CVirtualDirectoryPanel::CVirtualDirectoryPanel(const Console& console) : CTabPanel(console) {
    AddTab(tr("Virtual Directory (Storage Account)"), new CVDirListPanel(console), MountedIcon);
    AddTab(tr("Compressed Folders"), new CCompressedFolderList(console), CompressionIcon);
    AddTab(tr("Encrypted Folders"), new CEncFolderList(console), EncryptionIcon);
    AddTab(tr("Settings"), new CloudDriveSettings(console), SettingsIcon);
}
