#include "backup/RestoreTaskWizard.h"

#include "backup/RestoreComponent.h"
#include "backup/RestoreConfirm.h"
#include "backup/RestoreSetPage.h"
#include "backup/RestoreSrcPage.h"
#include "page/Console.h"
#include "page/UserPrompts.h"

#include <QPointer>

CRestoreTaskWizard::CRestoreTaskWizard(const Console& console, const std::optional<RestoreStart>& start,
                                       QWidget* parent)
    : CBrenPropertySheet(console.reader, console.prompts, tr("Restore"), parent),
      m_choice(std::make_shared<RestoreChoice>()) {
    if (start) {
        m_choice->storage = start->set.place.target;
        m_choice->places = {start->set.place};
        m_choice->set = start->set;
        m_choice->snapshot = start->snapshot;
        m_choice->hasSnapshot = true;
    } else {
        AddPage(new CRestoreSrcPage(console, m_choice));
    }
    AddPage(new CRestoreSet(console, m_choice));
    AddPage(new CRestoreComponent(console, m_choice));
    AddPage(new CRestoreConfirm(console, m_choice));
}

void OpenRestoreWizard(const Console& console, QWidget* over, const std::optional<RestoreStart>& start,
                       std::function<void(const std::optional<RestoreDraft>& created)> done) {
    auto* wizard = new CRestoreTaskWizard(console, start, over->window());
    QObject::connect(wizard, &QDialog::finished, over,
                     [&console, wizard, over, done = std::move(done)](int result) {
                         const bool created = result == QDialog::Accepted;
                         if (done)
                             done(created ? std::optional(wizard->Draft()) : std::nullopt);
                         if (created)
                             console.prompts.ShowMessage(
                                 over, CRestoreTaskWizard::tr("Restore task has been created, please check "
                                                              "the restore status in Task Manager"));
                     });
    wizard->open();
}
