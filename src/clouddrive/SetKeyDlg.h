#pragma once

#include "page/BrenDialog.h"

#include <atomic>

class PasswordField;
class QLabel;
class UserPrompts;

/// Sets the password that the service encrypts folders with. One that is set already is replaced only after a
/// question; while it is not known whether there is one, nothing is written.
class CSetKeyDlg : public CBrenDialog {
    Q_OBJECT

public:
    CSetKeyDlg(const ServiceClient& service, Reader& reader, UserPrompts& prompts, QWidget* parent = nullptr);

    /// Said before why a password could not be set.
    void SetFailureLead(const QString& lead) { m_failureLead = lead; }

    void accept() override;

protected:
    QString Refusal() const override;
    Write Changes() const override;

private:
    void ShowStrength();

    UserPrompts& m_prompts;
    PasswordField* m_password;
    PasswordField* m_again;
    QLabel* m_strength;
    QString m_failureLead;
    std::shared_ptr<std::atomic<bool>> m_isSet; ///< as last read; a write that finds one out says so too
    bool m_asking = false;
    bool m_mayReplace = false; ///< the question was answered by Yes
};
