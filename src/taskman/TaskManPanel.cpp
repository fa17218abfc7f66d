#include "taskman/TaskManPanel.h"

#include "list/RecordPanel.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/CommandRunner.h"
#include "service/KnownSettings.h"
#include "settings/TaskItemSettings.h"
#include "taskman/CompletedTable.h"
#include "taskman/RunningTable.h"
#include "taskman/TaskListPanel.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>

namespace {

constexpr int SimpleTabs = 2;

} // namespace

CTaskManPanel::CTaskManPanel(const Console& console)
    : CTabPanel(console), m_advanced(new QCheckBox(tr("Advanced Mode"))),
      m_unsaved(new QLabel(tr("not saved"))) {
    SetSideActions({RefreshAction()});
    AddTab(tr("My Tasks"), new CTaskListPanel(console, TaskFilter::MyTasks), TaskListIcon);
    AddTab(tr("System Activities"), new RecordPanel(console, SystemActivityTable(console.counters)),
           SystemActivitiesIcon);
    AddHiddenTab(tr("Task Settings"), new CTaskItemSettings(console), TaskSettingsIcon);
    AddHiddenTab(tr("System Tasks"), new CTaskListPanel(console, TaskFilter::SystemTasks), SystemTasksIcon);
    AddHiddenTab(tr("Completed Tasks"), new RecordPanel(console, CompletedTable()), CompletedTasksIcon);
    m_advanced->setFont(Look::Font(Look::Small));
    m_unsaved->setFont(Look::Font(Look::Small));
    Look::SetInk(*m_unsaved, Look::Failed);
    m_unsaved->hide();
    auto* corner = new QWidget;
    auto* row = new QHBoxLayout(corner);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_unsaved);
    row->addWidget(m_advanced);
    SetCorner(corner);
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
        [this](const Loaded<ServiceAnswer>& answer) {
            EndWriteMode(answer.value.value_or(ServiceAnswer()));
        });
    SetMode(advanced);
}

/// The status line is the current page's, which may take it for itself; the words beside the box stay.
void CTaskManPanel::EndWriteMode(const ServiceAnswer& answer) {
    const bool wasSaved = m_unsaved->isHidden();
    const QString failure =
        answer ? QString() : tr("Advanced Mode was not saved: %1").arg(WhyNotDone(answer));
    m_unsaved->setVisible(!answer);
    m_unsaved->setToolTip(Look::ToolTip(failure));
    for (QWidget* told : std::initializer_list<QWidget*>{m_unsaved, m_advanced})
        told->setAccessibleDescription(failure);
    if (!answer && IsActive())
        Frame().SetStatusText(failure);
    else if (!wasSaved && IsActive())
        Activate();
}
