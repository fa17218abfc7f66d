#include "clouddrive/SetKeyDlg.h"

#include "page/PasswordField.h"
#include "page/UserPrompts.h"
#include "service/CloudFolders.h"

#include <QLabel>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;

CSetKeyDlg::CSetKeyDlg(const ServiceClient& service, Reader& reader, UserPrompts& prompts, QWidget* parent)
    : CBrenDialog(service, reader, tr("Set Encryption Key"), parent), m_prompts(prompts),
      m_password(new PasswordField), m_again(new PasswordField),
      m_isSet(std::make_shared<std::atomic<bool>>(false)) {
    AddNote(
        tr("Please enter the password that will be used to encrypt your files and keep it in a safe place. "
           "It cannot be recovered. If it is missing, your encrypted files will be inaccessible."));
    m_password->setAccessibleName(tr("Password"));
    m_again->setAccessibleName(tr("Re-Enter Password"));
    AddRow(tr("&Password:"), m_password);
    AddRow(tr("&Re-Enter Password"), m_again);
    m_strength = AddNote({});
    ShowStrength();
    connect(m_password, &PasswordField::TextChanged, this, &CSetKeyDlg::ShowStrength);
    ReadWhenShown(
        [](const ServiceClient& client, std::stop_token stop) -> std::optional<PasswordState> {
            const PasswordState state = ReadPasswordState(client, std::move(stop));
            return state == PasswordState::NotRead ? std::nullopt : std::optional(state);
        },
        [this](PasswordState state) { *m_isSet = state == PasswordState::Set; });
}

QString CSetKeyDlg::Refusal() const {
    if (m_password->Text().isEmpty())
        return tr("Password can not be empty");
    if (m_password->Text() != m_again->Text())
        return tr("Password does not match");
    return PasswordRefusal(m_password->Text());
}

void CSetKeyDlg::accept() {
    if (m_asking)
        return;
    if (!*m_isSet || m_mayReplace || !Refusal().isEmpty())
        return CBrenDialog::accept();
    m_asking = true;
    m_prompts.AskYesNo(this,
                       tr("There is already an encryption password. Once you change the password, you will "
                          "NOT be able to access files encrypted using the old password. Do you really want "
                          "to make the change?"),
                       [this](bool yes) {
                           m_asking = false;
                           m_mayReplace = yes;
                           if (yes)
                               CBrenDialog::accept();
                       });
}

CBrenDialog::Write CSetKeyDlg::Changes() const {
    const OldPassword old = m_mayReplace ? OldPassword::MayBeReplaced : OldPassword::None;
    return {[password = m_password->Text(), old, isSet = m_isSet,
             lead = m_failureLead](const ServiceClient& client, std::stop_token stop) {
                const PasswordChange change = StorePassword(client, password, old, std::move(stop));
                if (change.wasSet)
                    *isSet = true;
                return change.failure.isEmpty() || lead.isEmpty() ? change.failure
                                                                  : lead + u". "_s + change.failure;
            },
            {QString::fromLatin1(EncryptionPassword)}};
}

/// A hint, whatever it says: OK takes every password.
void CSetKeyDlg::ShowStrength() {
    QString words;
    switch (StrengthOf(m_password->Text())) {
    case PasswordStrength::Empty:
        words = tr("A long password of several words is hard to guess.");
        break;
    case PasswordStrength::Weak:
        words = tr("Weak: this password may be guessed. A longer one is safer.");
        break;
    case PasswordStrength::Fair:
        words = tr("Fair: a few characters more make this password safer.");
        break;
    case PasswordStrength::Strong:
        words = tr("Strong: this password is hard to guess.");
        break;
    }
    m_strength->setText(words);
    m_password->Edit().setAccessibleDescription(words);
}
