#pragma once

#include "plan/BackupSchedule.h"
#include "wizard/WizardPage.h"

class ScheduleEditor;

/// The wizards' page that asks when to back up.
class CAdvSchedule : public WizardPage {
    Q_OBJECT

public:
    /// `flavour` is Mirrored or Snapshot. The schedule is a part of the wizard's draft, and gets the default.
    CAdvSchedule(ScheduleForm flavour, std::shared_ptr<BackupSchedule> schedule);

    PageLine Line() const override;
    void Leave() override;

private:
    ScheduleForm m_flavour;
    std::shared_ptr<BackupSchedule> m_schedule;
    ScheduleEditor* m_editor;
};
