#include "backup/BackupTaskList.h"

#include "backup/BackupItem.h"
#include "backup/FileIndexGuide.h"
#include "backup/RestoreTaskWizard.h"
#include "look/IconRegistry.h"
#include "page/WebPage.h"
#include "platform/Folders.h"
#include "platform/Shell.h"
#include "taskman/TaskListPanel.h"
#include "zep/SysInfo.h"

using namespace Qt::Literals::StringLiterals;

namespace {

std::filesystem::path DocsBackupProgram() {
    return platform::ExecutableFolder() / "DocsBackup.exe";
}

} // namespace

CBackupTaskList::CBackupTaskList(const Console& console, BackupFlavour flavour)
    : CardPanel(console), m_flavour(flavour), m_fileIndex(new FileIndexGuide(console, *this)) {
    CardSection section = TaskSection(
        console.counters, [flavour](const TaskRecord& task) { return ListedFlavour(task) == flavour; });
    section.help =
        tr("View and manage backup tasks. Create backup tasks using the icons on the left. Monitor "
           "backup progress, history and settings by clicking the down arrow on the right.");
    section.hidden = tr("%1 more backups are not shown. Find a backup by its name to see it here.");
    section.notFound = tr("No backup's name contains \"%1\".");
    section.shared = tr("%1 backups have this name.");
    section.make = [this](const CardEntry& entry) {
        auto card =
            std::make_unique<CBackupItem>(TheConsole(), Commands(), static_cast<const TaskRow&>(entry));
        connect(card.get(), &CTaskManItem::Commanded, this, &CBackupTaskList::Reload);
        return card;
    };
    section.makeEmptyView = [flavour] {
        return new WebPage(flavour == BackupFlavour::Mirrored ? u"backup-mirror.html"_s
                                                              : u"backup-snapshot.html"_s);
    };
    SetSection(std::move(section));
    SetSideActions(SideActions());
}

std::vector<FrameAction> CBackupTaskList::SideActions() {
    std::vector<FrameAction> actions;
    if (m_flavour == BackupFlavour::Mirrored && !ZEPSysInfoIsServer() &&
        std::filesystem::exists(DocsBackupProgram()))
        actions.push_back({tr("Backup Google Docs"), BackupIcon, [this] {
                               if (!platform::StartProgram(DocsBackupProgram()))
                                   Frame().SetStatusText(tr("The program could not be started."));
                           }});
    if (m_flavour == BackupFlavour::Snapshot)
        actions.push_back({tr("Restore"), DownloadIcon, [this] {
                               OpenRestoreWizard(TheConsole(), this, {}, [this](const auto&) { Reload(); });
                           }});
    actions.push_back({tr("Force Index for File Type Backup"), SearchIcon, [this] { m_fileIndex->Force(); }});
    actions.push_back(RefreshAction());
    return actions;
}
