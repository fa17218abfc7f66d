#pragma once

#include "wizard/BrenPropertySheet.h"

struct Console;

/// Makes a backup of applications.
class CAdvBackupTaskWizard : public CBrenPropertySheet {
    Q_OBJECT

public:
    explicit CAdvBackupTaskWizard(const Console& console, QWidget* parent = nullptr);
};
