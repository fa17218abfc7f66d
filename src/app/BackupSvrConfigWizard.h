#pragma once

#include "wizard/BrenPropertySheet.h"

struct Console;

/// The first steps of a backup server: says what is to be done, makes its first backups, and marks the server
/// as set up when finished.
class CBackupSvrConfigWizard : public CBrenPropertySheet {
    Q_OBJECT

public:
    explicit CBackupSvrConfigWizard(const Console& console, QWidget* parent = nullptr);
};
