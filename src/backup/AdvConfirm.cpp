#include "backup/AdvConfirm.h"

#include "backup/WritersPage.h"
#include "plan/ConfirmTexts.h"
#include "zep/Mui.h"

namespace {

ConfirmPlan PlanOfApplications(const Console& console, const std::shared_ptr<ApplicationChoice>& choice,
                               const WizardPage& schedulePage) {
    const std::shared_ptr<ApplicationDraft> draft(choice, &choice->draft);
    ConfirmPlan plan = PlanOf(draft);
    plan.title = CAdvConfirm::tr("Confirm and Start");
    plan.subtitle = CAdvConfirm::tr("Nothing is created until you press Finish.");
    plan.text = [draft] { return ApplicationConfirmText(*draft); };
    plan.proposedName = [choice] { return ApplicationBackupName(choice->names, choice->draft.target); };
    const std::shared_ptr<const BackupSchedule> schedule(draft, &draft->schedule);
    plan.links = {ScheduleLink(schedulePage, schedule, ScheduleForm::Snapshot), MailLink(console)};
    plan.keyFailure = ZEPMuiGetStringW(Message::KeyNotStored);
    plan.createFailure = ZEPMuiGetStringW(Message::BackupNotCreated);
    return plan;
}

} // namespace

CAdvConfirm::CAdvConfirm(const Console& console, const std::shared_ptr<ApplicationChoice>& choice,
                         const WizardPage& schedulePage)
    : ConfirmPage(console, PlanOfApplications(console, choice, schedulePage)) {}
