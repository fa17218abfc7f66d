#include "taskman/TaskManPanel.h"

#include "list/RecordPanel.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "service/ServiceClient.h"
#include "settings/TaskItemSettings.h"
#include "taskman/CompletedTable.h"
#include "taskman/RunningTable.h"
#include "taskman/TaskListPanel.h"

#include <QCheckBox>

namespace {

constexpr int SimpleTabs = 2;
constexpr int NotFound = 404; ///< the service's answer for a setting that was never set
const QString ModeSetting = QStringLiteral("TaskAdvancedMode");

} // namespace

CTaskManPanel::CTaskManPanel(const Console& console)
    : CTabPanel(console), m_advanced(new QCheckBox(tr("Advanced Mode"))) {
    SetSideActions({RefreshAction()});
    AddTab(tr("My Tasks"), new CTaskListPanel(console, TaskFilter::MyTasks), TaskListIcon);
    AddTab(tr("System Activities"), new CRecordPanel(console, SystemActivityTable(console.counters)),
           SystemActivitiesIcon);
    AddHiddenTab(tr("Task Settings"), new CTaskItemSettings(console), TaskSettingsIcon);
    AddHiddenTab(tr("System Tasks"), new CTaskListPanel(console, TaskFilter::SystemTasks), SystemTasksIcon);
    AddHiddenTab(tr("Completed Tasks"), new CRecordPanel(console, CompletedTable()), CompletedTasksIcon);
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
            const ServiceAnswer answer = service.GetSetting(ModeSetting, stop);
            const bool neverSet = answer.outcome == ServiceOutcome::OtherStatus && answer.status == NotFound;
            if (!answer && !neverSet)
                return {};
            return LeadingNumber(answer.body) != 0;
        },
        [this](const Loaded<bool>& advanced) {
            if (advanced && !m_modeKnown)
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
            return service.SetIntSetting(ModeSetting, advanced ? 1 : 0, stop);
        },
        [](const Loaded<ServiceAnswer>&) {});
    SetMode(advanced);
}
