#include "backup/Confirm.h"

#include "backup/CountView.h"
#include "backup/FilterDialog.h"
#include "plan/ConfirmTexts.h"
#include "plan/FolderSelection.h"
#include "platform/HostName.h"

namespace {

/// Opens the dialog that chooses which files are taken; it remembers what its fields held.
ConfirmLink FilterLink(const std::shared_ptr<BackupDraft>& draft, CountView* count) {
    const auto choice = std::make_shared<FilterChoice>();
    const auto open = [draft, choice, count](ConfirmPage& page) {
        OpenFilterDialog(&page, *choice, count, [draft, choice, count, &page](const FilterChoice& chosen) {
            *choice = chosen;
            draft->filter = FilterOf(chosen);
            page.ShowDraft();
            count->Count(*draft);
            emit page.Edited();
        });
    };
    return {[] { return CConfirm::tr("<a>Backup All Files In Selected Folder (Click To Change)</a>"); },
            open};
}

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
    auto* count = new CountView(console);
    plan.below = count;
    plan.shown = [draft, count] { count->Count(*draft); };
    plan.links = {FilterLink(draft, count),
                  ScheduleLink(schedulePage, schedule, ScheduleFormOf(draft->flavour)), MailLink(console)};
    plan.keyFailure = CConfirm::tr("Unable to set encrypt key");
    plan.createFailure = CConfirm::tr("Failed to create backup task!");
    return plan;
}

} // namespace

CConfirm::CConfirm(const Console& console, const std::shared_ptr<BackupDraft>& draft,
                   const WizardPage& schedulePage)
    : ConfirmPage(console, PlanOfFolders(console, draft, schedulePage)) {}
