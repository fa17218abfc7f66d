#include "taskman/TaskManPanel.h"

#include "list/RecordPanel.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "service/KnownSettings.h"
#include "settings/TaskItemSettings.h"
#include "taskman/CompletedTable.h"
#include "taskman/RunningTable.h"
#include "taskman/TaskListPanel.h"

#include <QCheckBox>

namespace {

constexpr int SimpleTabs = 2;

} // namespace

CTaskManPanel::CTaskManPanel(const Console& console)
    : CTabPanel(console), m_advanced(new QCheckBox(tr("Advanced Mode"))) {
    SetSideActions({RefreshAction()});
    AddTab(tr("My Tasks"), new CTaskListPanel(console, TaskFilter::MyTasks), TaskListIcon);
    AddTab(tr("System Activities"), new RecordPanel(console, SystemActivityTable(console.counters)),
           SystemActivitiesIcon);
    AddHiddenTab(tr("Task Settings"), new CTaskItemSettings(console), TaskSettingsIcon);
    AddHiddenTab(tr("System Tasks"), new CTaskListPanel(console, TaskFilter::SystemTasks), SystemTasksIcon);
    AddHiddenTab(tr("Completed Tasks"), new RecordPanel(console, CompletedTable()), CompletedTasksIcon);
    m_advanced->setFont(Look::Font(Look::Small));
    SetCorner(m_advanced);
    connect(m_advanced, &QCheckBox::toggled, this, &CTaskManPanel::WriteMode);
}

void CTaskManPanel::Reload() {
    CTabPanel::Reload();
    if (!m_modeKnown)
        ReadMode();
}

/// Keeps the simple mode while the service does not say, and asks again at the next refresh.
void CTaskManPanel::ReadMode() {
    Loader().Load(
        Lane::Service,
        [service = TheConsole().service](std::stop_token stop) -> std::optional<bool> {
            const SettingValue<int> mode = ReadSetting(service, Settings::TaskAdvancedMode, std::move(stop));
            return mode.WasRead() ? std::optional(mode.value != 0) : std::nullopt;
        },
        [this](const Loaded<bool>& advanced) {
            if (!advanced || m_modeKnown)
                return;
            m_modeKnown = true;
            if (*advanced != m_advanced->isChecked()) // else all is shown as it should be, and not read twice
                SetMode(*advanced);
        });
}

void CTaskManPanel::SetMode(bool advanced) {
    m_modeKnown = true;
    const QSignalBlocker asRead(m_advanced);
    m_advanced->setChecked(advanced);
    if (advanced)
        ShowAllTabs(SimpleTabs);
    else
        ShowFirstTabs(SimpleTabs);
}

void CTaskManPanel::WriteMode(bool advanced) {
    Loader().Command(
        Lane::Service,
        [service = TheConsole().service, advanced](std::stop_token stop) {
            return WriteSetting(service, Settings::TaskAdvancedMode, advanced ? 1 : 0, std::move(stop));
        },
        [this](const Loaded<ServiceAnswer>& answer) { EndWriteMode(answer && *answer); });
    SetMode(advanced);
}

/// The status line is the current page's, and gets its text back.
void CTaskManPanel::EndWriteMode(bool saved) {
    if (!saved && IsActive())
        Frame().SetStatusText(tr("Advanced Mode was not saved, because the service did not take it."));
    else if (saved && m_modeUnsaved && IsActive())
        Activate();
    m_modeUnsaved = !saved;
}
