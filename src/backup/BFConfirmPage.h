#pragma once

#include "backup/ConfirmPage.h"

/// The last page of the file-type wizard.
class CBFConfirmPage : public ConfirmPage {
    Q_OBJECT

public:
    CBFConfirmPage(const Console& console, const std::shared_ptr<BackupDraft>& draft,
                   const WizardPage& schedulePage);
};
