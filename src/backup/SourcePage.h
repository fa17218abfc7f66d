#pragma once

#include "backup/LocalLevels.h"
#include "plan/BackupDraft.h"
#include "wizard/WizardPage.h"

class CheckTreeView;
struct Console;

/// The folder wizard's page that asks what to back up: ticks in the tree of this computer's folders.
class CSourcePage : public WizardPage {
    Q_OBJECT

public:
    explicit CSourcePage(const Console& console, std::shared_ptr<BackupDraft> draft,
                         const LocalFolders& folders = {});

    void Fill() override;
    void Leave() override;
    PageLine Line() const override;

private:
    void StayFor(const QString& gone);

    std::shared_ptr<BackupDraft> m_draft;
    CheckTreeModel m_model;
    CheckTreeView* m_view;
};
