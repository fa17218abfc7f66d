#include "app/Pages.h"

#include "app/BackupSvrConfigWizard.h"
#include "backup/AdvBackupTaskWizard.h"
#include "backup/AdvSchedule.h"
#include "backup/BackupPanel.h"
#include "backup/BackupTaskWizard.h"
#include "backup/FileTypeWizard.h"
#include "backup/FilterDialog.h"
#include "backup/RestoreTaskWizard.h"
#include "backup/SchedulerPage.h"
#include "backup/UndoneFiles.h"
#include "clouddrive/BrowseDlg.h"
#include "clouddrive/CloudSvcPage.h"
#include "clouddrive/MountWizard.h"
#include "clouddrive/SetKeyDlg.h"
#include "clouddrive/VDirListPanel.h"
#include "clouddrive/VirtualDirectoryPanel.h"
#include "development/GalleryPanel.h"
#include "page/Console.h"
#include "page/SectionLinks.h"
#include "page/WebPagePanel.h"
#include "settings/SetBandWidthLimitDlg.h"
#include "settings/SettingsPanel.h"
#include "syncfolders/AddDropFolderDlg.h"
#include "syncfolders/SyncPanel.h"
#include "taskman/TaskList.h"
#include "taskman/TaskManPanel.h"
#include "window/BTaskMMCDlg.h"
#include "window/ConsoleStatusBar.h"
#include "wizard/CheckTreeView.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString Title(const char* text) {
    return QCoreApplication::translate("Pages", text);
}

PageEntry WebPage(const char* title, const char* icon, const char* fileName) {
    return {Title(title), QString::fromLatin1(icon), [fileName](const Console& console) -> CBrenPanel* {
                return new WebPagePanel(console, QString::fromLatin1(fileName));
            }};
}

/// Chooses the next mode of a schedule; false on the last one.
bool ChooseNextMode(QWidget& dialog) {
    auto* modes = dialog.findChild<QComboBox*>();
    const bool more = modes->currentIndex() + 1 < modes->count();
    modes->setCurrentIndex(modes->currentIndex() + (more ? 1 : 0));
    return more;
}

/// Ticks or selects the first row that has come.
void ChooseFirst(CheckTreeView& view) {
    const QModelIndex first = view.model()->index(0, 0);
    const bool hasBoxes = first.data(Qt::CheckStateRole).isValid();
    if (hasBoxes && view.Tree().Choice().IsEmpty())
        view.Tree().Toggle(first);
    else if (first.isValid() && !hasBoxes && !view.selectionModel()->hasSelection())
        view.setCurrentIndex(first);
}

void FillPage(QWidget& page) {
    if (auto* tree = page.findChild<CheckTreeView*>())
        return ChooseFirst(*tree);
    for (auto* choice : page.findChildren<QComboBox*>())
        if (choice->currentIndex() < 0)
            choice->setCurrentIndex(0);
    for (auto* line : page.findChildren<QLineEdit*>())
        if (line->text().isEmpty() && line->isVisible())
            line->setText(u"Sample"_s);
}

/// A snapshot of a backup that there may be.
RestoreStart SampleRestore() {
    RestoreSet set;
    set.place = {u"/Archive/Snapshots/Letters"_s, u"6E2D0001-5B1E-4C7A-9D20-3F6A00000003"_s};
    set.label = u"Weekly work snapshot"_s;
    set.type = SetType::Folder;
    return {set, SnapshotOf(u"2025-3-2-9-4-0_3"_s).value_or(Snapshot())};
}

/// Fills what is empty on a wizard's page and presses Next, once a page; false where that cannot be pressed.
bool GoOn(QWidget& dialog) {
    constexpr char Left[] = "leftPage";
    auto& sheet = static_cast<CBrenPropertySheet&>(dialog);
    WizardPage& page = *sheet.CurrentPage();
    if (qobject_cast<CAdvSchedule*>(&page) && ChooseNextMode(page))
        return true;
    FillPage(page);
    const auto buttons = sheet.findChildren<QPushButton*>();
    const auto next = std::find_if(buttons.begin(), buttons.end(), [](const QPushButton* button) {
        return button->text() == CBrenPropertySheet::tr("&Next") && button->isEnabled();
    });
    if (next == buttons.end() || sheet.property(Left) == page.Title())
        return false;
    sheet.setProperty(Left, page.Title());
    (*next)->click();
    return true;
}

void OpenScheduleDialog(CBTaskMMCDlg& window, ScheduleForm form) {
    const BackupSchedule schedule = DefaultSchedule(form, QDateTime::currentDateTime());
    auto* dialog = new CSchedulerPage(window.Parts().prompts, form, schedule, &window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

/// Of a task of the development service that has failed.
void OpenFailedFiles(CBTaskMMCDlg& window, const QString& taskId) {
    TaskRow task;
    task.id = taskId;
    task.title = Title(QT_TRANSLATE_NOOP("Pages", "Backup"));
    OpenUndoneFiles(window.Parts(), window, task, UndoneFiles::Failed);
}

} // namespace

std::vector<PageEntry> PagesOf(bool serverMode, bool withGallery) {
    std::vector<PageEntry> pages;
    if (!serverMode)
        pages.push_back(WebPage(QT_TRANSLATE_NOOP("Pages", "Welcome"), "home", "welcome.html"));
    const PageEntry backups{Title(QT_TRANSLATE_NOOP("Pages", "Backup and Restore")), u"backup"_s,
                            [](const Console& console) -> CBrenPanel* { return new CBackupPanel(console); }};
    if (serverMode)
        pages.push_back(backups);
    pages.push_back({serverMode ? Title(QT_TRANSLATE_NOOP("Pages", "Backup Target"))
                                : Title(QT_TRANSLATE_NOOP("Pages", "Cloud Drive")),
                     serverMode ? u"target"_s : u"cloud"_s, [](const Console& console) -> CBrenPanel* {
                         return new CVirtualDirectoryPanel(console);
                     }});
    if (!serverMode) {
        pages.push_back(backups);
        pages.push_back({Title(QT_TRANSLATE_NOOP("Pages", "Cloud Sync Folders")), u"sync"_s,
                         [](const Console& console) -> CBrenPanel* { return new CSyncPanel(console); }});
    }
    pages.push_back({Title(QT_TRANSLATE_NOOP("Pages", "Task Manager")), u"tasks"_s,
                     [](const Console& console) -> CBrenPanel* { return new CTaskManPanel(console); }});
    pages.push_back({Title(QT_TRANSLATE_NOOP("Pages", "Settings")), u"settings"_s,
                     [](const Console& console) -> CBrenPanel* { return new CSettingsPanel(console); }});
    pages.push_back(WebPage(QT_TRANSLATE_NOOP("Pages", "Support"), "support", "support.html"));
    if (withGallery) {
        pages.push_back({u"Gallery"_s, u"search"_s,
                         [](const Console& console) -> CBrenPanel* { return new GalleryPanel(console); }});
    }
    return pages;
}

std::vector<DialogEntry> DialogsOf(bool serverMode) {
    const auto bar = [](CBTaskMMCDlg& window) { return window.findChild<ConsoleStatusBar*>(); };
    const auto proxy = [](CBTaskMMCDlg& window) {
        auto* settings = window.findChild<CSettingsPanel*>();
        settings->EditProxy();
    };
    const auto mail = [](CBTaskMMCDlg& window) { window.findChild<CSettingsPanel*>()->EditNotification(); };
    const auto drive = [](CBTaskMMCDlg& window) -> CVDirListPanel& {
        return *window.findChild<CVDirListPanel*>();
    };
    const VDirRecord shown{u"Home"_s, u"{B1D4A6E0-2F57-4B1C-8E43-90A1C2D3E4F5}"_s, u"3"_s,
                           u"{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}"_s};
    const auto key = [](CBTaskMMCDlg& window) {
        const Console& parts = window.Parts();
        (new CSetKeyDlg(parts.service, parts.reader, parts.prompts, &window))->Open(parts.settingNews);
    };
    std::vector<DialogEntry> dialogs{
        {u"Mount virtual directory"_s, [drive](CBTaskMMCDlg& window) { drive(window).MountNew(); }, GoOn},
        {u"Account quota"_s, [drive](CBTaskMMCDlg& window) { drive(window).ShowQuota(); }},
        {u"Profile encryption"_s, [drive](CBTaskMMCDlg& window) { drive(window).EditProfileEncryption(); }},
        {u"Virtual directory manager"_s,
         [drive, shown](CBTaskMMCDlg& window) { drive(window).Directories().Config(shown); }},
        {u"Rename virtual directory"_s,
         [drive, shown](CBTaskMMCDlg& window) { drive(window).Directories().Rename(shown); }},
        {u"Bandwidth"_s, [bar](CBTaskMMCDlg& window) { emit bar(window)->BandwidthClicked(); }},
        {u"Cloud space"_s, [bar](CBTaskMMCDlg& window) { emit bar(window)->CloudSpaceClicked(); }},
        {u"Proxy"_s, proxy},
        {u"Email notification"_s, mail},
        {u"Encryption key"_s, key},
        {u"Folder picker"_s,
         [](CBTaskMMCDlg& window) {
             PickRemoteFolder(window.Parts(), OpenMountWizard, &window, {}, [](const auto&) {});
         }},
        {u"Files of a backup"_s,
         [](CBTaskMMCDlg& window) { OpenFilterDialog(&window, {}, nullptr, [](const auto&) {}); }},
        {u"New file type"_s,
         [](CBTaskMMCDlg& window) {
             auto* dialog = new CAddFileType(&window);
             dialog->setAttribute(Qt::WA_DeleteOnClose);
             dialog->open();
         }},
        {u"Schedule"_s,
         [serverMode](CBTaskMMCDlg& window) {
             OpenScheduleDialog(window, serverMode ? ScheduleForm::Server : ScheduleForm::Dialog);
         },
         ChooseNextMode},
        {u"Backup by folder mirrored"_s,
         [](CBTaskMMCDlg& window) {
             OpenFolderWizard(window.Parts(), window, BackupFlavour::Mirrored, [] {});
         },
         GoOn},
        {u"Backup by folder snapshots"_s,
         [](CBTaskMMCDlg& window) {
             OpenFolderWizard(window.Parts(), window, BackupFlavour::Snapshot, [] {});
         },
         GoOn},
        {u"Failed files"_s,
         [serverMode](CBTaskMMCDlg& window) {
             OpenFailedFiles(window, serverMode ? u"{6E2D0001-5B1E-4C7A-9D20-3F6A00000004}"_s
                                                : u"{6E2D0001-5B1E-4C7A-9D20-3F6A00000007}"_s);
         }},
        {u"Backup by file type"_s,
         [](CBTaskMMCDlg& window) {
             (new FileTypeWizard(window.Parts(), BackupFlavour::Snapshot, FileCategory::Pictures, &window))
                 ->open();
         },
         GoOn},
        {u"Restore"_s, [](CBTaskMMCDlg& window) { OpenRestoreWizard(window.Parts(), &window, {}, {}); },
         GoOn},
        {u"Restore from a snapshot"_s,
         [](CBTaskMMCDlg& window) { OpenRestoreWizard(window.Parts(), &window, SampleRestore(), {}); }, GoOn},
        {u"Backup by application"_s,
         [](CBTaskMMCDlg& window) { (new CAdvBackupTaskWizard(window.Parts(), &window))->open(); }, GoOn},
    };
    if (!serverMode) {
        dialogs.push_back(
            {u"Add sync folder"_s, [](CBTaskMMCDlg& window) {
                 const Console& parts = window.Parts();
                 (new CAddDropFolderDlg(parts, {u"Home"_s, u"Team"_s}, {}, &window))->Open(parts.settingNews);
             }});
    }
    if (serverMode) {
        dialogs.push_back(
            {u"Set-up wizard"_s,
             [](CBTaskMMCDlg& window) { (new CBackupSvrConfigWizard(window.Parts(), &window))->open(); },
             GoOn});
    }
    return dialogs;
}

void LinkSections(CBTaskMMCDlg& window) {
    window.Parts().links.showTraces = [&window](const QString& from, const QString& to) {
        for (int section = 0; section < window.SectionCount(); ++section)
            if (window.SectionTitle(section) == Title("Settings"))
                window.SelectSection(section);
        if (auto* settings = qobject_cast<CSettingsPanel*>(window.CurrentPage()))
            settings->ShowTraces(from, to);
    };
}

void SetRemoteFolderPicker(WindowPrompts& prompts, const Console& console) {
    prompts.SetRemoteFolderPicker([&console](QWidget* over, const RemoteFolderRequest& request,
                                             std::function<void(std::optional<QString>)> answer) {
        PickRemoteFolder(console, OpenMountWizard, over, request, std::move(answer));
    });
}

CBrenDialog* CloudSpaceDialog(const Console& console, QWidget* parent) {
    return new CloudSvcPage(console.service, console.reader, parent);
}

CBrenDialog* BandwidthDialog(const Console& console, QWidget* parent) {
    return new CSetBandWidthLimitDlg(console.service, console.reader, parent);
}
