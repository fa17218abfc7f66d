#pragma once

#include "backup/RestoreTaskWizard.h"
#include "wizard/CheckTreeModel.h"

class CheckTreeView;

/// Asks for the storage that backups were made to, and looks for their container there.
class CRestoreSrcPage : public WizardPage {
    Q_OBJECT

public:
    CRestoreSrcPage(const Console& console, std::shared_ptr<RestoreChoice> choice);

    void Fill() override;
    void Leave() override;
    PageLine Line() const override;

private:
    /// The sets of the containers in the ticked folder and its direct children, no deeper.
    struct Found {
        std::vector<BackupSetPlace> places;
        QString failure; ///< why the folder could not be looked through

        bool operator==(const Found&) const = default;
    };
    static Found LookIn(const ServiceClient& service, const QString& folder, ProgressNote& note,
                        const std::stop_token& stop);

    void KeepOneTick();
    void LookForSets();

    const Console& m_console;
    std::shared_ptr<RestoreChoice> m_choice;
    CheckTreeModel m_model;
    CheckTreeView* m_view;
    bool m_settling = false; ///< ticks are being taken away by us
    QStringList m_ticked;
    std::optional<Found> m_found; ///< in the ticked folder; none until it was looked through
};
