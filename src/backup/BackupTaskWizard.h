#pragma once

#include "backup/LocalLevels.h"
#include "plan/BackupTask.h"
#include "wizard/BrenPropertySheet.h"

struct Console;

/// Makes a backup of folders: which ones, where to, when, and the last look at all of it.
class CBackupTaskWizard : public CBrenPropertySheet {
    Q_OBJECT

public:
    CBackupTaskWizard(const Console& console, BackupFlavour flavour, QWidget* parent = nullptr,
                      const LocalFolders& folders = {});
};

/// Opens the wizard over the window of `over`. `closed` is called when it has closed, unless `over` has gone.
void OpenFolderWizard(const Console& console, QWidget& over, BackupFlavour flavour,
                      std::function<void()> closed);
