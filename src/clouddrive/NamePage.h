#pragma once

#include "clouddrive/MountWizard.h"

class Form;
class QComboBox;
class QLineEdit;
class UserPrompts;

/// Chooses the storage provider, from the service's list or a description file, and the virtual directory's
/// name.
class NamePage : public WizardPage {
    Q_OBJECT

public:
    NamePage(const Console& console, std::shared_ptr<MountDraft> draft);

    void Fill() override;
    void Leave() override;
    PageLine Line() const override;

protected:
    void showEvent(QShowEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    struct Facts;
    struct Offer {
        StorageProvider provider;
        bool fromFile = false;
    };

    QWidget* MakeFileRow();
    void PickFile();
    void TakeFile(const QString& file);
    QString Show(const Loaded<Facts>& facts);
    void ShowOffers(std::vector<Offer> offers, bool chooseLast);
    const Offer* Chosen() const;

    const Console& m_console;
    std::shared_ptr<MountDraft> m_draft;
    Form* m_form;
    QComboBox* m_provider;
    QLineEdit* m_name;
    std::vector<Offer> m_offers; ///< in the order of the choice
    QString m_file;              ///< a provider description; empty for none
};
