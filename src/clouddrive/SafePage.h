#pragma once

#include "clouddrive/MountWizard.h"

class Form;
class QScrollArea;
class QStackedWidget;

/// Asks for what the provider wants to know for a login. What was entered for a provider is kept as long as
/// the wizard lives, also while another one is chosen.
class CSafePage : public WizardPage {
    Q_OBJECT

public:
    CSafePage(const Console& console, std::shared_ptr<MountDraft> draft);

    QVariantList Inputs() const override { return {m_draft->choice}; }
    void Fill() override;
    void Leave() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// The fields of one provider.
    struct Login {
        StorageProvider provider;
        QScrollArea* area = nullptr;
        std::vector<QWidget*> fields; ///< one a field of the template; none where it is hidden
    };

    void ShowLogin(const StorageProvider& provider);
    Login MakeLogin(const StorageProvider& provider);
    QWidget* AddField(Form& form, const LoginField& field, int number);
    QStringList Values() const;
    void GoTo(QWidget* field);

    const Console& m_console;
    std::shared_ptr<MountDraft> m_draft;
    QStackedWidget* m_stack;
    std::vector<Login> m_logins;
    std::size_t m_shown = 0; ///< of m_logins
};

/// What a field's label says: its name on one line, of a length that can be shown; of a nameless one its
/// number, counted from 1.
QString LoginFieldLabel(const LoginField& field, int number);
