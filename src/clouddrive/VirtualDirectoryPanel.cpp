#include "clouddrive/VirtualDirectoryPanel.h"

#include "clouddrive/CloudDriveSettings.h"
#include "clouddrive/ProfileEncryptionDlg.h"
#include "clouddrive/Quota.h"
#include "clouddrive/VDirListPanel.h"
#include "look/IconRegistry.h"
#include "page/UserPrompts.h"

CVirtualDirectoryPanel::CVirtualDirectoryPanel(const Console& console)
    : CTabPanel(console), m_list(new CVDirListPanel(console)) {
    SetSideActions(
        {{tr("Mount Virtual Directory"), MountIcon, [this] { m_list->MountNew(); }},
         {tr("Account Quota"), QuotaIcon, [this] { ShowQuota(); }},
         {tr("Enable/Disable Profile Encryption"), EncryptionIcon, [this] { EditProfileEncryption(); }},
         RefreshAction()});
    AddTab(tr("Virtual Directory (Storage Account)"), m_list, MountedIcon);
    AddTab(tr("Settings"), new CloudDriveSettings(console), SettingsIcon);
}

VDirCommands& CVirtualDirectoryPanel::Directories() {
    return m_list->Directories();
}

void CVirtualDirectoryPanel::ShowQuota() {
    CQuota::Open(TheConsole(), window());
}

void CVirtualDirectoryPanel::EditProfileEncryption() {
    auto* dialog = new ProfileEncryptionDlg(TheConsole().service, TheConsole().reader, window());
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        if (dialog->IsOffered())
            TheConsole().prompts.ShowMessage(
                this, tr("Settings will take effect when the application starts next time."));
    });
    dialog->Open(TheConsole().settingNews);
}
