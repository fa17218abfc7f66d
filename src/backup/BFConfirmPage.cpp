#include "backup/BFConfirmPage.h"

#include "plan/ConfirmTexts.h"
#include "zep/Mui.h"

namespace {

ConfirmPlan PlanOfTypes(const Console& console, const std::shared_ptr<BackupDraft>& draft,
                        const WizardPage& schedulePage) {
    ConfirmPlan plan = PlanOf(draft);
    plan.title = CBFConfirmPage::tr("Confirm");
    plan.subtitle = CBFConfirmPage::tr("Confirm Backup Settings");
    plan.text = [draft] { return FileTypeConfirmText(*draft); };
    const std::shared_ptr<const BackupSchedule> schedule(draft, &draft->schedule);
    plan.links = {ScheduleLink(schedulePage, schedule, ScheduleFormOf(draft->flavour)), MailLink(console)};
    plan.keyFailure = ZEPMuiGetStringW(Message::KeyNotStored);
    plan.createFailure = ZEPMuiGetStringW(Message::BackupNotCreated);
    return plan;
}

} // namespace

CBFConfirmPage::CBFConfirmPage(const Console& console, const std::shared_ptr<BackupDraft>& draft,
                               const WizardPage& schedulePage)
    : ConfirmPage(console, PlanOfTypes(console, draft, schedulePage)) {}
