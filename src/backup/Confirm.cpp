#include "backup/Confirm.h"

#include "plan/ConfirmTexts.h"
#include "plan/FolderSelection.h"
#include "platform/HostName.h"

namespace {

ConfirmPlan PlanOfFolders(const Console& console, const std::shared_ptr<BackupDraft>& draft,
                          const WizardPage& schedulePage) {
    ConfirmPlan plan = PlanOf(draft);
    plan.title = CConfirm::tr("Confirm and Start");
    plan.subtitle = CConfirm::tr("Nothing is created until you press Finish.");
    plan.text = [draft] { return FolderConfirmText(*draft); };
    plan.proposedName = [draft, host = QString::fromStdString(platform::HostName())] {
        return FolderBackupName(*draft, SelectionName(draft->sources), host, QDateTime::currentDateTime());
    };
    const std::shared_ptr<const BackupSchedule> schedule(draft, &draft->schedule);
    plan.links = {ScheduleLink(schedulePage, schedule, ScheduleFormOf(draft->flavour)), MailLink(console)};
    plan.keyFailure = CConfirm::tr("Unable to set encrypt key");
    plan.createFailure = CConfirm::tr("Failed to create backup task!");
    return plan;
}

} // namespace

CConfirm::CConfirm(const Console& console, const std::shared_ptr<BackupDraft>& draft,
                   const WizardPage& schedulePage)
    : ConfirmPage(console, PlanOfFolders(console, draft, schedulePage)) {}
