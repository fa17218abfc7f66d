#pragma once

#include "page/SettingsDialog.h"

class QLineEdit;
class QPushButton;
class UserPrompts;

/// Asks whether the service mails about backup tasks, and to whom. "Test" sends a mail to what stands in the
/// address field, saved or not.
class CEmailDlg : public SettingsDialog {
    Q_OBJECT

public:
    /// Whose notifications they are; it shows in the caption.
    enum class Notifies { AllTasks, SnapshotBackup };

    CEmailDlg(const ServiceClient& service, Reader& reader, UserPrompts& prompts, QWidget* parent = nullptr,
              Notifies notifies = Notifies::AllTasks);

protected:
    QString Refusal() const override;

private:
    void Test();

    UserPrompts& m_prompts;
    QLineEdit* m_address = nullptr;
    std::shared_ptr<void> m_box; ///< while a test is under way
    PageLoader m_tester;
};
