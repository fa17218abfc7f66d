#include "backup/BackupItem.h"

#include "backup/BackupSummary.h"
#include "look/Look.h"
#include "page/TabPanel.h"
#include "zep/UserSettings.h"

#include <QCheckBox>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString AdvancedMode = u"BackupTaskAdvancedMode"_s;
constexpr int PlainTabs = 2; ///< summary and history

TaskCardPlan BackupCard(const LiveCounters& counters) {
    return {[](const TaskRow& task) { return BackupKindText(KindOfBackup(task.type, task.description)); },
            BackupSummary(),
            {HistoryView(), RunningView(counters), PendingView(), PendingRetryView(), TraceView()}};
}

} // namespace

CBackupItem::CBackupItem(const Console& console, CommandRunner& commands, const TaskRow& task)
    : CTaskManItem(console, commands, task, BackupCard(console.counters)) {}

void CBackupItem::FinishViews(CTabPanel& tabs) {
    auto* advanced = new QCheckBox(tr("Advanced Mode"));
    advanced->setFont(Look::Font(Look::Small));
    advanced->setChecked(ZEPSettingsGetSwitch(AdvancedMode));
    if (!advanced->isChecked())
        tabs.ShowFirstTabs(PlainTabs);
    tabs.SetCorner(advanced);
    connect(advanced, &QCheckBox::toggled, &tabs, [&tabs](bool on) {
        ZEPSettingsSetSwitch(AdvancedMode, on);
        on ? tabs.ShowAllTabs(PlainTabs) : tabs.ShowFirstTabs(PlainTabs);
    });
}
