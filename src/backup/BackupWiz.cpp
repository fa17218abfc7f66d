#include "backup/BackupWiz.h"

#include "list/BrenListCtrl.h"
#include "list/RecordTable.h"
#include "list/RecordView.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/Console.h"
#include "page/NoticeLine.h"
#include "service/KnownSettings.h"
#include "stores/SchedulerStore.h"
#include "wizard/BrenPropertySheet.h"
#include "zep/Mui.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

struct ListedBackup {
    QString id;
    QString name;

    friend bool operator==(const ListedBackup&, const ListedBackup&) = default;
};

RowCommand Cancelling() {
    const QString question = ZEPMuiGetStringW(Message::AskCancelBackup);
    return DeleteCommand<ListedBackup>(
        {.caption = CBackupWiz::tr("Cancel Backup"),
         .icon = CancelTaskIcon,
         .words = CBackupWiz::tr("Click to cancel the backup task")},
        {.one = question, .several = question, .failed = CBackupWiz::tr("The backup was not cancelled.")},
        [](const ServiceClient& service, const ListedBackup& backup, const std::stop_token& stop) {
            return service.DeleteTask(backup.id, stop);
        });
}

/// The backups of both flavours.
ListTable BackupsTable() {
    return RecordTable<ListedBackup>{.page = {.name = CBackupWiz::tr("Backups"),
                                              .widths = u"BackupNow"_s,
                                              .empty = CBackupWiz::tr("There is no backup yet.")},
                                     .columns = {{CBackupWiz::tr("Backup Name"), 300, &ListedBackup::name}},
                                     .id = {&ListedBackup::id},
                                     .read =
                                         [](RecordStream<ListedBackup>& rows, std::stop_token stop) {
                                             const auto put = [&rows](const TaskRecord& task) {
                                                 if (ListedFlavour(task))
                                                     rows.Put({task.taskId, task.name});
                                                 return true;
                                             };
                                             return EnumAllTasks(put, std::move(stop));
                                         },
                                     .commands = {Cancelling()}};
}

} // namespace

CBackupWiz::CBackupWiz(const Console& console, const BackupWizards& wizards)
    : WizardPage(tr("Backup Now"),
                 tr("Make the first backups of this server. Finish marks it as set up and opens "
                    "its console, where more can be made at any time.")),
      m_console(console), m_backups(new RecordView(console, BackupsTable())) {
    auto* failure = new NoticeLine;
    connect(m_backups, &RecordView::Changed, this,
            [this, failure] { failure->SetText(m_backups->Failure()); });
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Look::CardGap);
    AddButton(*buttons, tr("Backup by File &Type"), wizards.byFileType);
    AddButton(*buttons, tr("Backup by Fo&lder"), wizards.byFolder);
    AddButton(*buttons, tr("Backup by &Application"), wizards.byApplication);
    buttons->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Look::TextInset);
    column->addWidget(failure);
    column->addWidget(m_backups, 1);
    column->addLayout(buttons);
}

void CBackupWiz::AddButton(QHBoxLayout& row, const QString& caption, const BackupWizards::Open& open) {
    if (!open)
        return;
    auto* button = new QPushButton(caption);
    button->setAutoDefault(false);
    row.addWidget(button);
    connect(button, &QPushButton::clicked, this, [this, open] {
        open(m_console, *this, BackupFlavour::Snapshot, [view = QPointer(m_backups)] {
            if (view)
                view->Read();
        });
    });
}

void CBackupWiz::Leave() {
    const auto send = [service = m_console.service](std::stop_token stop) {
        return WriteSetting(service, Settings::BSInitConfig, true, std::move(stop))
                   ? QString()
                   : tr("The service did not take the configuration. Check that it is running, then choose "
                        "Finish again.");
    };
    Sheet().SendAll(Lane::Service,
                    {{tr("Marking this server as set up..."), Settings::BSInitConfig.name, send, true}});
}

void CBackupWiz::showEvent(QShowEvent* event) {
    WizardPage::showEvent(event);
    m_backups->Read();
}
