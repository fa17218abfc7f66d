#pragma once

#include "service/ServiceClient.h"
#include "wizard/WizardPage.h"

class FolderPicker;
struct Console;

/// The wizards' page that asks where to back up to: a folder in a mounted virtual directory.
class CTargetPage : public WizardPage {
    Q_OBJECT

public:
    /// The target is a part of the wizard's draft.
    CTargetPage(const Console& console, std::shared_ptr<QString> target);

    void Fill() override;
    void Leave() override;
    PageLine Line() const override;

private:
    const Console& m_console;
    std::shared_ptr<QString> m_target;
    FolderPicker* m_picker;
};

/// Why nothing can be backed up to the folder now, in a sentence; empty when it is there.
QString TargetFailure(const ServiceClient& service, const QString& target, const std::stop_token& stop);
