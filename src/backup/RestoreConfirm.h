#pragma once

#include "backup/RestoreTaskWizard.h"
#include "backup/TaskSender.h"

class Form;
class NoticeLine;
class PathField;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

/// The last page: shows what was chosen, what will become of it, and has the service make the task.
class CRestoreConfirm : public WizardPage {
    Q_OBJECT

public:
    CRestoreConfirm(const Console& console, std::shared_ptr<RestoreChoice> choice);

    QVariantList Inputs() const override;
    void Fill() override;
    void Leave() override;
    void Escape() override { m_sender.GiveUp(); }
    bool CanEscape() const override { return m_sender.IsSending(); }

private:
    QString Text() const;
    void TakeFields();
    void OnEdited();
    void ShowExample();
    void Count();
    void Send();

    const Console& m_console;
    std::shared_ptr<RestoreChoice> m_choice;
    TaskSender m_sender;
    PageLoader m_counter;
    NoticeLine* m_notice;
    QPlainTextEdit* m_text;
    Form* m_form;
    QLineEdit* m_name;
    QComboBox* m_policy;
    QCheckBox* m_elsewhere;
    PathField* m_location;
    QLabel* m_example;
    QLabel* m_count;
    QString m_proposed; ///< the name that the field was given
};
