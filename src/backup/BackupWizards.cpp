#include "backup/BackupWizards.h"

const BackupWizards& TheBackupWizards() {
    static const BackupWizards wizards{
        .byFolder = {},
        .byFileType = {},
        .byApplication = {},
    };
    return wizards;
}
