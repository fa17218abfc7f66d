#include "syncfolders/DropFolderList.h"

#include "look/IconRegistry.h"
#include "page/SettingNews.h"
#include "page/WebPage.h"
#include "syncfolders/DropFolderItem.h"
#include "syncfolders/SyncCommands.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::chrono::milliseconds NextTasks{1000};

} // namespace

CDropFolderList::CDropFolderList(const Console& console, WallClock clock)
    : CardPanel(console), m_commands(new SyncCommands(console, Commands(), *this)) {
    CardSection section;
    section.help = tr("Use Cloud Sync Folders to sync files across multiple computers. Click the icon on the "
                      "left to create a new Cloud Sync Folder. Sync a file by adding it to the Cloud Sync "
                      "Folder.");
    section.hidden = tr("%1 more Cloud Sync Folders are not shown. Find one by its name to see it here.");
    section.notFound = tr("No Cloud Sync Folder's name contains \"%1\".");
    section.shared = tr("%1 Cloud Sync Folders have this name.");
    for (const TaskState state : {TaskState::Running, TaskState::Failed, TaskState::Paused})
        section.states.push_back({static_cast<int>(state), TaskStateText(state)});
    section.lane = Lane::Service;
    section.read = SyncListReader(console.service, console.counters, m_memory);
    section.make = [this, clock = std::move(clock)](const CardEntry& entry) {
        return std::make_unique<CDropFolderItem>(TheConsole(), *m_commands,
                                                 static_cast<const SyncRow&>(entry), clock);
    };
    section.show = [](CExpandableItem& card, const CardEntry& entry) {
        static_cast<CDropFolderItem&>(card).Update(static_cast<const SyncRow&>(entry));
    };
    section.makeEmptyView = [] { return new WebPage(u"dropfolder.html"_s); };
    SetSection(std::move(section));
    SetSideActions(
        {{tr("Add New Cloud Sync Folder"), SyncIcon, [this] { m_commands->Add(); }}, RefreshAction()});
    const auto reload = [this] {
        if (IsActive()) // otherwise it is read when it is shown
            Reload();
    };
    connect(m_commands, &SyncCommands::Changed, this, reload);
    connect(&console.settingNews, &SettingNews::Written, this,
            [this, reload](const QString& name, const QObject* writer) {
                if (name == QLatin1String(DropFolders.name) && writer != m_commands)
                    reload();
            });
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, reload);
}

void CDropFolderList::TellRead(const ReadResult& read) {
    CardPanel::TellRead(read);
    if (m_memory->more)
        m_next.start(NextTasks);
}
