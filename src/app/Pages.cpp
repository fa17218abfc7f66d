#include "app/Pages.h"

#include "development/GalleryPanel.h"
#include "page/Console.h"
#include "settings/SettingsPanel.h"
#include "taskman/TaskManPanel.h"
#include "window/WebPagePanel.h"

namespace {

PageEntry WebPage(const char* title, const char* icon, const char* fileName) {
    return {QString::fromLatin1(title), QString::fromLatin1(icon),
            [fileName](const Console& console) -> CBrenPanel* {
                return new CWebPagePanel(console, QString::fromLatin1(fileName));
            }};
}

} // namespace

std::vector<PageEntry> PagesOf(bool serverMode, bool withGallery) {
    std::vector<PageEntry> pages;
    if (!serverMode)
        pages.push_back(WebPage("Welcome", "home", "welcome.html"));
    pages.push_back({QStringLiteral("Task Manager"), QStringLiteral("tasks"),
                     [](const Console& console) -> CBrenPanel* { return new CTaskManPanel(console); }});
    pages.push_back({QStringLiteral("Settings"), QStringLiteral("settings"),
                     [](const Console& console) -> CBrenPanel* { return new CSettingsPanel(console); }});
    pages.push_back(WebPage("Support", "support", "support.html"));
    if (withGallery) {
        pages.push_back({QStringLiteral("Gallery"), QStringLiteral("search"),
                         [](const Console& console) -> CBrenPanel* { return new CGalleryPanel(console); }});
    }
    return pages;
}
