#pragma once

#include "backup/BackupWizards.h"
#include "page/Console.h"
#include "wizard/WizardPage.h"

class QHBoxLayout;
class RecordView;

/// The last page of a server's set-up: its backups, and what makes new ones. Finish marks the server as set
/// up.
class CBackupWiz : public WizardPage {
    Q_OBJECT

public:
    explicit CBackupWiz(const Console& console, const BackupWizards& wizards = TheBackupWizards());

    void Leave() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void AddButton(QHBoxLayout& row, const QString& caption, const BackupWizards::Open& open);

    const Console& m_console;
    RecordView* m_backups;
};
