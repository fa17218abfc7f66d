#pragma once

#include "plan/BackupTask.h"
#include "wizard/BrenPropertySheet.h"

#include <functional>

struct Console;

/// Makes a backup of applications.
class CAdvBackupTaskWizard : public CBrenPropertySheet {
    Q_OBJECT

public:
    explicit CAdvBackupTaskWizard(const Console& console, QWidget* parent = nullptr);
};

/// Opens the wizard over the window of `over`; its backups are snapshots in any case. `closed` is called when
/// it has closed, unless `over` has gone.
void OpenApplicationWizard(const Console& console, QWidget& over, BackupFlavour flavour,
                           std::function<void()> closed);
