#include "backup/AdvBackupTaskWizard.h"

#include "backup/AdvConfirm.h"
#include "backup/AdvSchedule.h"
#include "backup/TargetPage.h"
#include "backup/WritersPage.h"
#include "page/Console.h"

CAdvBackupTaskWizard::CAdvBackupTaskWizard(const Console& console, QWidget* parent)
    : CBrenPropertySheet(console.reader, console.prompts, tr("Backup by Application"), parent) {
    const auto choice = std::make_shared<ApplicationChoice>();
    ApplicationDraft& draft = choice->draft;
    auto* schedule =
        new CAdvSchedule(ScheduleForm::Snapshot, std::shared_ptr<BackupSchedule>(choice, &draft.schedule));
    AddPage(new CWritersPage(console, choice));
    AddPage(new CTargetPage(console, std::shared_ptr<QString>(choice, &draft.target)));
    AddPage(schedule);
    AddPage(new CAdvConfirm(console, choice, *schedule));
}

void OpenApplicationWizard(const Console& console, QWidget& over, BackupFlavour,
                           std::function<void()> closed) {
    auto* wizard = new CAdvBackupTaskWizard(console, over.window());
    QObject::connect(wizard, &QDialog::finished, &over, std::move(closed));
    wizard->open();
}
