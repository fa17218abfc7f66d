#include "backup/SchedulerPage.h"

#include "backup/ScheduleEditor.h"
#include "page/UserPrompts.h"

#include <QDialogButtonBox>
#include <QEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int Width = 600;

} // namespace

CSchedulerPage::CSchedulerPage(UserPrompts& prompts, ScheduleForm form, const BackupSchedule& before,
                               QWidget* parent)
    : QDialog(parent), m_prompts(prompts), m_form(form), m_editor(new ScheduleEditor(form)) {
    setWindowTitle(tr("Task Scheduling"));
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(tr("&Apply"), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &CSchedulerPage::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CSchedulerPage::reject);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(12);
    column->addWidget(m_editor, 1);
    column->addWidget(buttons);

    // As high as its fullest form, so that choosing a mode moves no button.
    BackupSchedule fullest = before;
    fullest.mode = ScheduleMode::Weekdays;
    m_editor->SetSchedule(fullest);
    resize(Width, layout()->totalHeightForWidth(Width));
    m_editor->SetSchedule(before);
}

BackupSchedule CSchedulerPage::Schedule() const {
    return m_editor->Schedule();
}

void CSchedulerPage::accept() {
    const QString refusal = ScheduleRefusal(Schedule(), m_form);
    if (refusal.isEmpty())
        return QDialog::accept();
    m_prompts.ShowMessage(this, refusal, [this] { m_editor->FocusWeekdays(); });
}

bool CSchedulerPage::event(QEvent* event) {
    const bool handled = QDialog::event(event);
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize)
        setMinimumHeight(layout()->totalHeightForWidth(width()));
    return handled;
}
