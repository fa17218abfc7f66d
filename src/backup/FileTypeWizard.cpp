#include "backup/FileTypeWizard.h"

#include "backup/AdvSchedule.h"
#include "backup/BFConfirmPage.h"
#include "backup/FileIndexGuide.h"
#include "backup/FileTypePage.h"
#include "backup/PreviewPage.h"
#include "backup/TargetPage.h"
#include "page/Console.h"

using namespace Qt::Literals::StringLiterals;

FileTypeWizard::FileTypeWizard(const Console& console, BackupFlavour flavour, FileCategory category,
                               QWidget* parent)
    : CBrenPropertySheet(console.reader, console.prompts, tr("Backup by File Type"), parent) {
    const auto draft = std::make_shared<BackupDraft>();
    draft->flavour = flavour;
    draft->sources = {u"@"_s};
    auto* schedule =
        new CAdvSchedule(ScheduleFormOf(flavour), std::shared_ptr<BackupSchedule>(draft, &draft->schedule));
    AddPage(new CFileTypePage(category, draft));
    AddPage(new CPreviewPage(console, draft));
    AddPage(new CTargetPage(console, std::shared_ptr<QString>(draft, &draft->target)));
    AddPage(schedule);
    AddPage(new CBFConfirmPage(console, draft, *schedule));
}

void OpenFileTypeWizard(const Console& console, QWidget& over, BackupFlavour flavour,
                        std::function<void()> closed) {
    auto* guide = over.findChild<FileIndexGuide*>({}, Qt::FindDirectChildrenOnly);
    if (!guide)
        guide = new FileIndexGuide(console, over);
    guide->Ensure([&console, &over, flavour, closed = std::move(closed)] {
        auto* wizard = new FileTypeWizard(console, flavour, FileCategory::All, over.window());
        QObject::connect(wizard, &QDialog::finished, &over, closed);
        wizard->open();
    });
}
