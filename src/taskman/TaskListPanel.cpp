#include "taskman/TaskListPanel.h"

#include "page/WebPage.h"
#include "taskman/TaskManItem.h"

using namespace Qt::Literals::StringLiterals;

CardSection TaskSection(const LiveCounters& counters, TaskChoice isListed) {
    CardSection section;
    for (const TaskState state : {TaskState::Running, TaskState::Failed, TaskState::Paused})
        section.states.push_back({static_cast<int>(state), TaskStateText(state)});
    section.counter = TraceCounter::TaskTable;
    section.read = [isListed = std::move(isListed), &counters](std::stop_token stop) {
        return ReadTaskList(isListed, counters, stop);
    };
    section.show = [](CExpandableItem& card, const CardEntry& entry) {
        static_cast<CTaskManItem&>(card).Update(static_cast<const TaskRow&>(entry));
    };
    return section;
}

CTaskListPanel::CTaskListPanel(const Console& console, TaskFilter filter) : CardPanel(console) {
    CardSection section = TaskSection(console.counters, ChosenBy(filter));
    section.help = tr("View tasks. Use the icons on the right to start the task now or view details.");
    section.hidden = tr("%1 more tasks are not shown. Find a task by its name to see it here.");
    section.notFound = tr("No task's name contains \"%1\".");
    section.shared = tr("%1 tasks have this name.");
    section.make = [this](const CardEntry& entry) {
        auto card = std::make_unique<CTaskManItem>(
            TheConsole(), Commands(), static_cast<const TaskRow&>(entry), TaskManCard(TheConsole().counters));
        connect(card.get(), &CTaskManItem::Commanded, this, &CTaskListPanel::Reload);
        return card;
    };
    section.makeEmptyView = [] { return new WebPage(u"task_list.html"_s); };
    SetSection(std::move(section));
}
