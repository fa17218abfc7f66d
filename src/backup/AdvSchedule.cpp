#include "backup/AdvSchedule.h"

#include "backup/ScheduleEditor.h"
#include "wizard/BrenPropertySheet.h"

#include <QVBoxLayout>

CAdvSchedule::CAdvSchedule(ScheduleForm flavour, std::shared_ptr<BackupSchedule> schedule)
    : WizardPage(tr("When to Backup"), tr("Choose when the files are backed up.")), m_flavour(flavour),
      m_schedule(std::move(schedule)), m_editor(new ScheduleEditor(flavour)) {
    *m_schedule = m_editor->Schedule();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_editor);
    connect(m_editor, &ScheduleEditor::Edited, this, &WizardPage::Edited);
}

PageLine CAdvSchedule::Line() const {
    return {tr("Chosen:"), ConfirmedTexts(m_editor->Schedule(), m_flavour).summary};
}

void CAdvSchedule::Leave() {
    *m_schedule = m_editor->Schedule();
    Sheet().Pass();
}
