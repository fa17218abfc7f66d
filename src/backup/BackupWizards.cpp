#include "backup/BackupWizards.h"

#include "backup/AdvBackupTaskWizard.h"
#include "backup/BackupTaskWizard.h"
#include "backup/FileTypeWizard.h"

const BackupWizards& TheBackupWizards() {
    static const BackupWizards wizards{
        .byFolder = OpenFolderWizard,
        .byFileType = OpenFileTypeWizard,
        .byApplication = OpenApplicationWizard,
    };
    return wizards;
}
