#pragma once

#include "backup/ConfirmPage.h"

struct ApplicationChoice;

/// The last page of the application wizard.
class CAdvConfirm : public ConfirmPage {
    Q_OBJECT

public:
    CAdvConfirm(const Console& console, const std::shared_ptr<ApplicationChoice>& choice,
                const WizardPage& schedulePage);
};
