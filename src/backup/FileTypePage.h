#pragma once

#include "plan/BackupDraft.h"
#include "plan/FileTypes.h"
#include "wizard/WizardPage.h"

#include <memory>

class CheckList;
class QComboBox;
class QLineEdit;

/// Asks for the name of a backup by file type, and for the types.
class CFileTypePage : public WizardPage {
    Q_OBJECT

public:
    /// The rows are those of the category at first.
    CFileTypePage(FileCategory category, std::shared_ptr<BackupDraft> draft);

    void Leave() override;
    PageLine Line() const override;

protected:
    /// The last page shows the name as well, where it may be changed.
    void showEvent(QShowEvent* event) override;

private:
    QWidget* MakeAdding(bool enabled);
    void Add(FileCategory category);
    QStringList Chosen() const;

    std::shared_ptr<BackupDraft> m_draft;
    QLineEdit* m_name;
    CheckList* m_types;
    QComboBox* m_categories;
};
