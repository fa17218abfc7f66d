#include "backup/BackupTaskWizard.h"

#include "backup/AdvSchedule.h"
#include "backup/Confirm.h"
#include "backup/SourcePage.h"
#include "backup/TargetPage.h"
#include "page/Console.h"

CBackupTaskWizard::CBackupTaskWizard(const Console& console, BackupFlavour flavour, QWidget* parent,
                                     const LocalFolders& folders)
    : CBrenPropertySheet(console.reader, console.prompts, tr("Backup by Folder"), parent) {
    const auto draft = std::make_shared<BackupDraft>();
    draft->flavour = flavour;
    AddPage(new CSourcePage(console, draft, folders));
    AddPage(new CTargetPage(console, std::shared_ptr<QString>(draft, &draft->target)));
    auto* schedule =
        new CAdvSchedule(ScheduleFormOf(flavour), std::shared_ptr<BackupSchedule>(draft, &draft->schedule));
    AddPage(schedule);
    AddPage(new CConfirm(console, draft, *schedule));
}

void OpenFolderWizard(const Console& console, QWidget& over, BackupFlavour flavour,
                      std::function<void()> closed) {
    auto* wizard = new CBackupTaskWizard(console, flavour, over.window());
    QObject::connect(wizard, &QDialog::finished, &over, std::move(closed));
    wizard->open();
}
