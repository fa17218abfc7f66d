#include "backup/BackupTaskList.h"

#include "backup/BackupItem.h"
#include "backup/BackupWizards.h"
#include "backup/FileIndexGuide.h"
#include "backup/RestoreTaskWizard.h"
#include "look/IconRegistry.h"
#include "mail/EmailDlg.h"
#include "page/WebPage.h"
#include "platform/Folders.h"
#include "platform/Shell.h"
#include "stores/ProcessLogStore.h"
#include "taskman/TaskListPanel.h"
#include "zep/SysInfo.h"

using namespace Qt::Literals::StringLiterals;

namespace {

std::filesystem::path DocsBackupProgram() {
    return platform::ExecutableFolder() / "DocsBackup.exe";
}

struct MarkedRuns {
    CBackupItem::RunMark mark;
    BackupRuns runs;
};

/// As many of them as can be read.
std::vector<MarkedRuns> ReadLog(const std::vector<CBackupItem::RunMark>& marks, const std::stop_token& stop) {
    ProcessLogStore store(stop);
    std::vector<MarkedRuns> all;
    all.reserve(marks.size());
    for (const CBackupItem::RunMark& mark : marks) {
        std::vector<ProcessLogRecord> log;
        if (!store.FillProcessLog(mark.id, log))
            break;
        all.push_back({mark, RunsOf(log)});
    }
    return all;
}

} // namespace

CBackupTaskList::CBackupTaskList(const Console& console, BackupFlavour flavour)
    : CardPanel(console), m_flavour(flavour), m_fileIndex(new FileIndexGuide(console, *this)),
      m_runs(console.reader, *this) {
    m_shown.setSingleShot(true);
    connect(&m_shown, &QTimer::timeout, this, &CBackupTaskList::ReadRuns);
    connect(this, &CBackupTaskList::LaidOut, &m_shown, qOverload<>(&QTimer::start));
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

CBackupItem& CBackupTaskList::BackupAt(int index) const {
    return *static_cast<CBackupItem*>(CardAt(index));
}

void CBackupTaskList::EditNotification() {
    if (m_emailDlg)
        return;
    const Console& console = TheConsole();
    m_emailDlg = new CEmailDlg(console.service, console.reader, console.prompts, this,
                               CEmailDlg::Notifies::SnapshotBackup);
    m_emailDlg->Open(console.settingNews);
}

void CBackupTaskList::ReadRuns() {
    ShowOverdue();
    if (!IsActive() || m_runs.IsReading())
        return;
    std::vector<CBackupItem::RunMark> marks;
    for (const CExpandableItem* card : CardsInFront())
        if (const auto& backup = static_cast<const CBackupItem&>(*card); backup.WantsRuns())
            marks.push_back(backup.Mark());
    if (marks.empty())
        return;
    m_runs.Load(
        Lane::Databases,
        [marks = std::move(marks)](const std::stop_token& stop) { return ReadLog(marks, stop); },
        [this](const Loaded<std::vector<MarkedRuns>>& loaded) {
            if (!loaded)
                return;
            for (int card = 0; card < CardCount(); ++card)
                for (const MarkedRuns& read : *loaded)
                    if (BackupAt(card).Mark().id == read.mark.id)
                        BackupAt(card).SetRuns(read.mark, read.runs);
            ShowOverdue();
            if (!loaded->empty())
                m_shown.start(); // the page may have been turned meanwhile
        });
}

void CBackupTaskList::ShowOverdue() {
    std::vector<qint64> days;
    for (int card = 0; card < CardCount(); ++card)
        if (const std::optional<qint64> overdue = BackupAt(card).Overdue())
            days.push_back(*overdue);
    TellCondition(OverdueText(days));
}

std::vector<FrameAction> CBackupTaskList::SideActions() {
    std::vector<FrameAction> actions;
    const auto add = [&](const QString& caption, int image, const BackupWizards::Open& open) {
        if (open)
            actions.push_back({caption, image, [this, open] {
                                   open(TheConsole(), *this, m_flavour, [list = QPointer(this)] {
                                       if (list)
                                           list->PostReload();
                                   });
                               }});
    };
    const BackupWizards& wizards = TheBackupWizards();
    add(tr("Backup by Folder"), FolderIcon, wizards.byFolder);
    add(tr("Backup by File Type"), FileVersionsIcon, wizards.byFileType);
    if (m_flavour == BackupFlavour::Snapshot)
        add(tr("Backup by Application"), SettingsIcon, wizards.byApplication);
    if (m_flavour == BackupFlavour::Snapshot)
        actions.push_back(
            {tr("Restore"), DownloadIcon,
             [this] { OpenRestoreWizard(TheConsole(), this, {}, [this](const auto&) { PostReload(); }); }});
    if (m_flavour == BackupFlavour::Snapshot)
        actions.push_back({tr("Email Settings"), EmailIcon, [this] { EditNotification(); }});
    if (m_flavour == BackupFlavour::Mirrored && !ZEPSysInfoIsServer() &&
        std::filesystem::exists(DocsBackupProgram()))
        actions.push_back({tr("Backup Google Docs"), BackupIcon, [this] {
                               if (!platform::StartProgram(DocsBackupProgram()))
                                   Frame().SetStatusText(tr("The program could not be started."));
                           }});
    actions.push_back({tr("Force Index for File Type Backup"), SearchIcon, [this] { m_fileIndex->Force(); }});
    actions.push_back(RefreshAction());
    return actions;
}
