#include "development/GalleryCards.h"

#include "cards/ExpandableItemList.h"
#include "cards/TaskItem.h"
#include "look/IconRegistry.h"
#include "page/LinkLabel.h"
#include "page/TabPanel.h"

#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Sample {
    const char* title;
    const char* body;
    const char* status;
    const char* state;
    int icon;
    int progress;
    const char* failure = "";
    bool stale = false;
};

constexpr Sample Samples[] = {
    {"Photos to Northwind Storage", "Mirrored Backup  \xC2\xB7  Last run 2026-11-20 22:00:04",
     "412 of 1280 sub-tasks, 00:12:40 Remaining", "Running", TaskRunningIcon, 322},
    {"Accounts snapshot", "Snapshot Backup  \xC2\xB7  Last run 2026-11-21 1:30:2",
     "Next Run: 2026-11-22 1:30:0", "Pending", TaskPendingIcon, 0},
    {"Mail archive", "Application Data Backup  \xC2\xB7  Failed: the target refused the login",
     "Next Run: 2026-11-21 18:15:0", "Failed", TaskFailedIcon, 0},
    {"Drop Folder Sync - Projects", "Cloud Sync Folder Task  \xC2\xB7  Last run 2026-11-21 9:02:11", "Paused",
     "Paused", TaskPausedIcon, 0, "Not resumed: the service does not answer in time"},
    {"Restore [Contracts] From [Northwind]", "Restore  \xC2\xB7  Last run 2026-11-21 17:00:00", "Completed",
     "Completed", TaskCompletedIcon, 0},
    {"Home", "Virtual directory", "Connected", "Mounted", MountedIcon, 0, "", true},
    {"A title that is much longer than the room that a title band of a card has beside the status text of "
     "the card",
     "A line about the card that goes on and on, behind the buttons at its end if they did not cut it off "
     "before that",
     "A status text that does not fit into the place that it has", "Running", TaskRunningIcon, 1000},
    {"\xD7\x92\xD7\x99\xD7\x91\xD7\x95\xD7\x99 <b>&amp; \xCE\xA9\xD0\x96", "Markup stays <a>text</a>", "",
     "Pending", TaskPendingIcon, 0},
};

QString Text(const char* utf8) {
    return QString::fromUtf8(utf8);
}

class SampleCard : public CTaskItem {
public:
    SampleCard(const Console& console, const QString& title, const Sample& sample)
        : CTaskItem(title), m_console(console) {
        SetBodyText(Text(sample.body));
        SetStatusText(Text(sample.status));
        SetStatusIcon(IconRegistry::Name(sample.icon), sample.icon, Text(sample.state));
        SetProgress(sample.progress);
        SetFailure(Text(sample.failure));
        SetStale(sample.stale);
        AddAction(u"Cancel"_s, CancelTaskIcon, [] {});
        m_start = AddAction(u"Start Now"_s, StartIcon, [this] { Switch(); });
        EnableAction(m_start, sample.icon != TaskCompletedIcon);
        if (sample.progress > 0)
            SetAction(m_start, u"Pause"_s, PauseIcon);
    }

    void OnExpanded() override {
        if (!Content())
            SetContent(MakeContent());
        CTaskItem::OnExpanded();
    }

private:
    void Switch() {
        const bool starts = ActionCaption(m_start) == "Start Now"_L1;
        SetAction(m_start, starts ? u"Pause"_s : u"Start Now"_s, starts ? PauseIcon : StartIcon);
    }

    CBrenPanel* MakeContent() {
        auto* tabs = new CTabPanel(m_console);
        for (const auto& [title, icon] : {std::pair("Summary", CompletedTasksIcon),
                                          {"Running", OtherOperationIcon},
                                          {"Pending", TaskPendingIcon},
                                          {"History", FileVersionsIcon},
                                          {"Trace", TraceIcon}}) {
            auto* page = new CBrenPanel(m_console);
            auto* layout = new QVBoxLayout(page);
            layout->addWidget(new LinkLabel(u"The view <a>%1</a> of this card"_s.arg(Text(title))), 0,
                              Qt::AlignTop);
            tabs->AddTab(Text(title), page, icon);
        }
        return tabs;
    }

    const Console& m_console;
    int m_start = 0;
};

} // namespace

CBrenPanel* MakeGalleryCards(const Console& console, int count) {
    auto* list = new CExpandableItemList(console);
    auto* empty = new LinkLabel(u"You have not configured a cloud storage account.  Click <a>here</a> "
                                "or the icon on the left panel to add a cloud storage account."_s);
    empty->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    empty->setWordWrap(true);
    list->SetEmptyView(empty, {20, 20, 20, 20});
    list->BeginRefresh();
    for (int number = 0; number < count; ++number) {
        const Sample& sample = Samples[static_cast<std::size_t>(number) % std::size(Samples)];
        QString title = Text(sample.title);
        if (number >= static_cast<int>(std::size(Samples)))
            title += u" %1"_s.arg(number);
        list->Keep(title, [&] { return std::make_unique<SampleCard>(console, title, sample); });
    }
    list->EndRefresh();
    return list;
}
