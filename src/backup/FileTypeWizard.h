#pragma once

#include "plan/BackupTask.h"
#include "plan/FileTypes.h"
#include "wizard/BrenPropertySheet.h"

#include <functional>

struct Console;

/// Makes a backup of all files of some types, which are those of the category at first.
class FileTypeWizard : public CBrenPropertySheet {
    Q_OBJECT

public:
    FileTypeWizard(const Console& console, BackupFlavour flavour, FileCategory category = FileCategory::All,
                   QWidget* parent = nullptr);
};

/// Opens the wizard over the window of `over` once there is an index of files. `closed` is called when it has
/// closed, unless `over` has gone.
void OpenFileTypeWizard(const Console& console, QWidget& over, BackupFlavour flavour,
                        std::function<void()> closed);
