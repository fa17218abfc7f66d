#pragma once

#include "plan/BackupSchedule.h"

#include <QDialog>

class ScheduleEditor;
class UserPrompts;

/// Chooses the schedule of a backup, for wizards and for the settings of a task. Shown by `open()`; once it
/// is accepted it has what was chosen.
class CSchedulerPage : public QDialog {
    Q_OBJECT

public:
    /// A dialog's form. `before` is what was chosen last.
    CSchedulerPage(UserPrompts& prompts, ScheduleForm form, const BackupSchedule& before,
                   QWidget* parent = nullptr);

    BackupSchedule Schedule() const;
    ScheduleTexts Texts() const { return ConfirmedTexts(Schedule(), m_form); }

    void accept() override;

protected:
    bool event(QEvent* event) override;

private:
    UserPrompts& m_prompts;
    ScheduleForm m_form;
    ScheduleEditor* m_editor;
};
