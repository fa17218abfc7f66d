#pragma once

#include "backup/RestoreTaskWizard.h"
#include "wizard/CheckTreeModel.h"

class CheckTreeView;

/// Asks which snapshot of which set to restore.
class CRestoreSet : public WizardPage {
    Q_OBJECT

public:
    CRestoreSet(const Console& console, std::shared_ptr<RestoreChoice> choice);

    QVariantList Inputs() const override;
    void Fill() override;
    void Leave() override;
    PageLine Line() const override;

protected:
    /// Another page may have chosen another snapshot.
    void showEvent(QShowEvent* event) override;

private:
    using Sets = std::vector<RestoreSet>;

    void SelectChosen();
    /// The selected snapshot and its set; nothing when none is.
    std::optional<RestoreStart> Selected() const;

    const Console& m_console;
    std::shared_ptr<RestoreChoice> m_choice;
    CheckTreeModel m_model;
    CheckTreeView* m_view;
    Sets m_sets;
};
