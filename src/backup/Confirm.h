#pragma once

#include "backup/ConfirmPage.h"

/// The last page of the folder wizard.
class CConfirm : public ConfirmPage {
    Q_OBJECT

public:
    CConfirm(const Console& console, const std::shared_ptr<BackupDraft>& draft,
             const WizardPage& schedulePage);
};
