#include "syncfolders/DropFolderChanges.h"

#include "list/BrenListCtrl.h"
#include "list/RecordTable.h"
#include "list/RecordView.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "syncplan/FileVersions.h"

#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr OpenRule ThreeAttempts{3, std::chrono::milliseconds(100)};

RecordTable<FileChange> TableOf(const QString& name,
                                const std::function<void(const QString&)>& showVersions) {
    return {.page = {.name = CDropFolderChanges::tr("Change Log"),
                     .widths = u"SyncChanges"_s,
                     .status = CDropFolderChanges::tr(
                                   "View change history for shared files in this cloud sync folder.") +
                               u' ' + CDropFolderChanges::tr("These are the latest 200 changes."),
                     .empty = CDropFolderChanges::tr("No change has been noted yet."),
                     .period = std::chrono::seconds(5),
                     .subject = name},
            .columns = {{CDropFolderChanges::tr("File Name"), 260, &FileChange::file},
                        {CDropFolderChanges::tr("Operation"), 80,
                         [](const FileChange& change) { return ChangeText(change.operation); }},
                        {CDropFolderChanges::tr("Last Modify Time"),
                         140,
                         {[](const FileChange& change) {
                              return Cell::Plain(StampText(change.stamp, CurrentStamp()));
                          },
                          [](const FileChange& change) { return StampNumber(change.stamp); }}},
                        {CDropFolderChanges::tr("Updated By"), 100, &FileChange::updater},
                        {CDropFolderChanges::tr("Updated From"), 120, &FileChange::computer}},
            .id = {&FileChange::file, &FileChange::stamp, &FileChange::operation},
            .read =
                [name](RecordStream<FileChange>& rows, std::stop_token stop) {
                    std::vector<HistoryRecord> records;
                    ReadResult read =
                        FillHistory(HistoryView::ChangeList, name, records, std::move(stop), ThreeAttempts);
                    rows.PutAll(ChangesOf(records));
                    return read;
                },
            .commands = {{.caption = CDropFolderChanges::tr("Show Versions"),
                          .icon = FileVersionsIcon,
                          .words = CDropFolderChanges::tr("Click to see the versions of the file"),
                          .run = [name, showVersions](RecordView&, const std::vector<TakenRow>& rows) {
                              const QString file = FileInside(RecordOf<FileChange>(rows.front()).file, name);
                              if (!file.isEmpty())
                                  showVersions(file);
                          }}}};
}

} // namespace

void RepaintByTheMinute(RecordView& view) {
    auto* timer = new QTimer(&view);
    QObject::connect(timer, &QTimer::timeout, &view, [&view] { view.List().viewport()->update(); });
    timer->start(std::chrono::minutes(1));
}

CDropFolderChanges::CDropFolderChanges(const Console& console, QString name,
                                       std::function<void(const QString&)> showVersions)
    : CBrenPanel(console), m_name(std::move(name)), m_showVersions(std::move(showVersions)) {}

void CDropFolderChanges::CreatePanel() {
    m_view = new RecordView(TheConsole(), TableOf(m_name, m_showVersions));
    RepaintByTheMinute(*m_view);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    layout->addWidget(m_view);
    setFocusProxy(m_view);
    connect(m_view, &RecordView::Changed, this, &CDropFolderChanges::ShowState);
    ShowState();
    ReloadEvery(m_view->Page().period);
}

void CDropFolderChanges::Reload() {
    if (m_view)
        m_view->Read();
}

void CDropFolderChanges::OnPeriod() {
    if (!m_view->IsReading())
        m_view->ReadIfChanged();
}

void CDropFolderChanges::ShowState() {
    SetHelp(m_view->Help());
    TellFailure(m_view->Failure());
    SetToolbar({RefreshAction(tr("Refresh"))});
}

void CDropFolderChanges::OpenFind() {
    emit m_view->List().FindRequested();
}
