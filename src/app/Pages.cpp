#include "app/Pages.h"

#include "app/BackupSvrConfigWizard.h"
#include "clouddrive/BrowseDlg.h"
#include "clouddrive/CloudSvcPage.h"
#include "development/GalleryPanel.h"
#include "page/Console.h"
#include "page/WebPagePanel.h"
#include "settings/SetBandWidthLimitDlg.h"
#include "settings/SettingsPanel.h"
#include "taskman/TaskManPanel.h"

#include "window/BTaskMMCDlg.h"
#include "window/ConsoleStatusBar.h"

#include <QCoreApplication>

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

} // namespace

std::vector<PageEntry> PagesOf(bool serverMode, bool withGallery) {
    std::vector<PageEntry> pages;
    if (!serverMode)
        pages.push_back(WebPage(QT_TRANSLATE_NOOP("Pages", "Welcome"), "home", "welcome.html"));
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
    std::vector<DialogEntry> dialogs{
        {u"Bandwidth"_s, [bar](CBTaskMMCDlg& window) { emit bar(window)->BandwidthClicked(); }},
        {u"Cloud space"_s, [bar](CBTaskMMCDlg& window) { emit bar(window)->CloudSpaceClicked(); }},
        {u"Proxy"_s, proxy},
        {u"Folder picker"_s,
         [](CBTaskMMCDlg& window) { PickRemoteFolder(window.Parts(), {}, &window, {}, [](const auto&) {}); }},
    };
    if (serverMode) {
        dialogs.push_back({u"Set-up wizard"_s,
                           [](CBTaskMMCDlg& window) {
                               const Console& parts = window.Parts();
                               auto* wizard = new CBackupSvrConfigWizard(parts.service, parts.reader,
                                                                         parts.prompts, &window);
                               wizard->setAttribute(Qt::WA_DeleteOnClose);
                               wizard->open();
                           },
                           [](QWidget& dialog) {
                               auto& wizard = static_cast<QWizard&>(dialog);
                               const bool more = wizard.nextId() != -1;
                               wizard.next();
                               return more;
                           }});
    }
    return dialogs;
}

void SetRemoteFolderPicker(WindowPrompts& prompts, const Console& console) {
    prompts.SetRemoteFolderPicker([&console](QWidget* over, const RemoteFolderRequest& request,
                                             std::function<void(std::optional<QString>)> answer) {
        PickRemoteFolder(console, {}, over, request, std::move(answer));
    });
}

CBrenDialog* CloudSpaceDialog(const Console& console, QWidget* parent) {
    return new CloudSvcPage(console.service, console.reader, parent);
}

CBrenDialog* BandwidthDialog(const Console& console, QWidget* parent) {
    return new CSetBandWidthLimitDlg(console.service, console.reader, parent);
}
