#include "app/BackupSvrConfigWizard.h"

#include "backup/BackupWiz.h"
#include "zep/Mui.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

/// Tells what the wizard is for.
class WelcomePage : public WizardPage {
public:
    WelcomePage()
        : WizardPage(CBackupSvrConfigWizard::tr("Welcome to %1")
                         .arg(ZEPMuiGetBrandingStringW(Branding::BackupServerConsole)),
                     {}) {
        auto* label = new QLabel(CBackupSvrConfigWizard::tr(
            "This computer will store backups. Before its console opens for the first time, the background "
            "service has to know that the server is set up.\n\nBackup targets, schedules and bandwidth "
            "limits can be set in the console afterwards, and changed at any time."));
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(label);
        column->addStretch();
    }
};

} // namespace

CBackupSvrConfigWizard::CBackupSvrConfigWizard(const Console& console, QWidget* parent)
    : CBrenPropertySheet(console.reader, console.prompts, tr("Backup Server Configuration"), parent) {
    AddPage(new WelcomePage);
    AddPage(new CBackupWiz(console));
}
