#pragma once

#include <QString>

#include <filesystem>

/// The texts behind the numbers that the rest of the console speaks of: messages, and the names of product
/// and maker. The file `branding.xml` beside the executable may override each of them (docs/branding.md).
/// Call once at start-up, before any thread starts; without it the texts of our own stand.
void ZEPMuiInitialize();

/// The same with another branding file. What it does not name falls back to our own texts.
void ZEPMuiInitialize(const std::filesystem::path& brandingFile);

/// The text of the number, at most 4095 UTF-16 units; empty for a number without a text.
QString ZEPMuiGetStringW(int number);
QString ZEPMuiGetBrandingStringW(int number);

namespace Message {
enum : int {
    VirtualDirectoriesUnavailable = 288,
    HomeDirectoryMissing = 289,
    KeyNotStored = 294,
    BackupNotCreated = 295,
    FileMonitorCannotBeOpened = 302,
    AskBuildFileIndex = 303,
    FileMonitorNotRunning = 304,
    AskCancelBackup = 308,
    SelectFolderFirst = 309,
    NewFolderTitle = 310,
    FolderNotCreated = 311,
};
}

namespace Branding {
enum : int {
    ProductLine = 102,
    HomeFolderOnly = 105, ///< "yes" keeps folder pickers inside the home folder
    SettingsCatalogFile = 107,
    DesktopConsole = 119,
    BackupServerConsole = 138,
    HiddenCardField = 139, ///< identifier of a login card's field that is not shown
    SupportAddress = 9001, ///< where faults are reported to
    MailSender = 9002,     ///< whom the test mail comes from
};
}
