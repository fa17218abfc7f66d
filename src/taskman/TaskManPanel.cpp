#include "taskman/TaskManPanel.h"

#include "list/RecordPanel.h"
#include "look/IconRegistry.h"
#include "page/ModeBox.h"
#include "service/KnownSettings.h"
#include "settings/TaskItemSettings.h"
#include "taskman/CompletedTable.h"
#include "taskman/RunningTable.h"
#include "taskman/TaskListPanel.h"

namespace {

constexpr int SimpleTabs = 2;

} // namespace

CTaskManPanel::CTaskManPanel(const Console& console)
    : CTabPanel(console), m_mode(new ModeBox(console, Settings::TaskAdvancedMode)) {
    SetSideActions({RefreshAction()});
    AddTab(tr("My Tasks"), new CTaskListPanel(console, TaskFilter::MyTasks), TaskListIcon);
    AddTab(tr("System Activities"), new RecordPanel(console, SystemActivityTable(console.counters)),
           SystemActivitiesIcon);
    AddHiddenTab(tr("Task Settings"), new CTaskItemSettings(console), TaskSettingsIcon);
    AddHiddenTab(tr("System Tasks"), new CTaskListPanel(console, TaskFilter::SystemTasks), SystemTasksIcon);
    AddHiddenTab(tr("Completed Tasks"), new RecordPanel(console, CompletedTable()), CompletedTasksIcon);
    SetCorner(m_mode);
    connect(m_mode, &ModeBox::Changed, this,
            [this](bool advanced) { advanced ? ShowAllTabs(SimpleTabs) : ShowFirstTabs(SimpleTabs); });
    connect(m_mode, &ModeBox::NotSaved, this, [this](const QString& failure) {
        if (IsActive())
            Frame().SetStatusText(failure);
    });
    connect(m_mode, &ModeBox::SavedAgain, this, [this] {
        if (IsActive())
            Activate();
    });
}

void CTaskManPanel::Reload() {
    CTabPanel::Reload();
    m_mode->Read();
}
