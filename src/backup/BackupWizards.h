#pragma once

#include "plan/BackupTask.h"

#include <functional>

class QWidget;
struct Console;

/// The wizards that make backups. Each opens over a widget, and says when it is closed; an empty one has no
/// button.
struct BackupWizards {
    using Open =
        std::function<void(const Console&, QWidget& over, BackupFlavour, std::function<void()> closed)>;

    Open byFolder = {};
    Open byFileType = {}; ///< asks for the index of files before
    Open byApplication = {};
};

const BackupWizards& TheBackupWizards();
