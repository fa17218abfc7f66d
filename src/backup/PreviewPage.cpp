#include "backup/PreviewPage.h"

#include "backup/FileIndexGuide.h"
#include "backup/IndexedFiles.h"
#include "list/BrenListCtrl.h"
#include "list/RecordView.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/Console.h"
#include "page/LinkLabel.h"
#include "page/UserPrompts.h"
#include "plan/DraftRefusal.h"
#include "plan/FileTypes.h"
#include "platform/Shell.h"
#include "wizard/BrenPropertySheet.h"

#include <QSet>
#include <QVBoxLayout>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

struct ExcludedEntry {
    QString path;

    bool operator==(const ExcludedEntry&) const = default;
};

QString PathOf(const TakenRow& row) {
    return RecordOf<IndexedFile>(row).path.toString();
}

/// Each once.
QStringList PathsOf(const std::vector<TakenRow>& rows, QString (*pathOf)(const TakenRow&)) {
    QStringList paths;
    QSet<QString> seen;
    for (const TakenRow& row : rows)
        if (const QString path = pathOf(row); !seen.contains(path)) {
            seen.insert(path);
            paths.append(path);
        }
    return paths;
}

QString FolderOf(const TakenRow& row) {
    return FolderOfFile(RecordOf<IndexedFile>(row).path).toString();
}

} // namespace

CPreviewPage::CPreviewPage(const Console& console, std::shared_ptr<BackupDraft> draft)
    : WizardPage(tr("Preview"), tr("Exclude folders you don't want to include in the backup")),
      m_console(console), m_draft(std::move(draft)), m_count(std::make_shared<IndexedFileCount>()),
      m_files(new RecordView(console, FileTable())), m_link(new LinkLabel),
      m_left(new RecordView(console, ExclusionTable())), m_guide(new FileIndexGuide(console, *this)) {
    m_link->setFont(Look::Font(Look::Small));
    m_link->setWordWrap(true);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Look::TextInset);
    column->addWidget(m_files, 3);
    column->addWidget(m_link);
    column->addWidget(m_left, 1);
    connect(m_files, &RecordView::Changed, this, &CPreviewPage::ShowState);
    connect(m_link, &LinkLabel::LinkClicked, this, &CPreviewPage::OnLink);
    connect(&m_glance, &QTimer::timeout, this, &CPreviewPage::ShowState);
}

ListTable CPreviewPage::FileTable() {
    RecordPage page{.name = tr("Files"),
                    .widths = u"PreviewFiles"_s,
                    .empty = tr("The file index holds no files of these types."),
                    .loading = tr("Finding files..."),
                    .failure =
                        tr("There is no file index that could be read. The link below builds one, and "
                           "so does \"Force Index for File Type Backup\" beside the lists of backups."),
                    .subject = QString::number(m_counts)};
    RecordTable<IndexedFile> table =
        IndexedFileTable(std::move(page), {SplitFileTypes(m_draft->filter.types), m_exclusions, m_count});
    table.commands = {
        {tr("Exclude the File"), CancelTaskIcon, tr("Exclude the File"),
         [this](RecordView&, const std::vector<TakenRow>& rows) { Exclude(PathsOf(rows, PathOf)); }},
        {tr("Exclude Containing Folder"), FolderIcon, tr("Exclude Containing Folder"),
         [this](RecordView&, const std::vector<TakenRow>& rows) { Exclude(PathsOf(rows, FolderOf)); }},
        {tr("Open Containing Folder"), OpenFolderIcon, tr("Open Containing Folder"),
         [this](RecordView&, const std::vector<TakenRow>& rows) {
             const QString folder = FolderOf(rows.front());
             if (!platform::OpenInShell(folder.toStdString()))
                 m_console.prompts.ShowMessage(this, tr("\"%1\" could not be opened.").arg(folder));
         }}};
    return table;
}

ListTable CPreviewPage::ExclusionTable() {
    const auto read = [exclusions = m_exclusions](RecordStream<ExcludedEntry>& rows, const std::stop_token&) {
        for (const QString& path : exclusions)
            rows.Put({path});
        return ReadResult();
    };
    const auto remove = [this](RecordView&, const std::vector<TakenRow>& rows) {
        QStringList kept = m_exclusions;
        for (const TakenRow& row : rows)
            kept.removeOne(RecordOf<ExcludedEntry>(row).path);
        ChangeExclusions(kept);
    };
    RowCommand command{tr("Remove"), DeleteIcon, tr("Remove"), remove};
    command.key = Qt::Key_Delete;
    return RecordTable<ExcludedEntry>{
        .page = {.name = tr("Excluded files and folders"),
                 .widths = {},
                 .empty = tr("Nothing is excluded."),
                 .lane = Lane::Computing,
                 .edition = QString::number(m_changes)},
        .columns = {{tr("Excluded Files and Folders"), 520, &ExcludedEntry::path}},
        .id = &ExcludedEntry::path,
        .read = read,
        .commands = {command}};
}

void CPreviewPage::Fill() {
    CountFiles();
    m_left->Read();
}

void CPreviewPage::CountFiles() {
    ++m_counts;
    m_stale = false;
    m_count = std::make_shared<IndexedFileCount>();
    m_files->Turn(FileTable());
    m_glance.start(100ms);
    ShowState();
}

void CPreviewPage::showEvent(QShowEvent* event) {
    WizardPage::showEvent(event);
    if (m_counts > 0 && !m_count->ended)
        CountFiles();
}

void CPreviewPage::ShowState() {
    if (!IsCounting() || !isVisible())
        m_glance.stop();
    m_link->SetText(LinkText());
}

bool CPreviewPage::IsCounting() const {
    return m_files->IsReading() || !m_count->ended;
}

QString CPreviewPage::LinkText() const {
    const int count = m_count->files;
    if (IsCounting())
        return tr("Finding %1 files ...").arg(count);
    if (!m_files->Failure().isEmpty())
        return tr("<a>The file index could not be read. (Click to build it)</a>");
    if (m_stale)
        return tr("<a>Excluded File/Folder List Changed, Click to Refresh</a>");
    return tr("<a>%1 files found, System and hidden files are not included. (Click to refresh)</a>")
        .arg(count);
}

void CPreviewPage::OnLink() {
    m_guide->Refresh([this] { CountFiles(); });
}

void CPreviewPage::Exclude(const QStringList& entries) {
    QStringList exclusions = m_exclusions;
    for (const QString& entry : entries) {
        if (const QString refusal = EntryRefusal(entry); !refusal.isEmpty())
            return m_console.prompts.ShowMessage(this, refusal);
        if (!exclusions.contains(entry))
            exclusions.append(entry);
    }
    ChangeExclusions(exclusions);
}

void CPreviewPage::ChangeExclusions(const QStringList& exclusions) {
    if (exclusions == m_exclusions)
        return;
    m_exclusions = exclusions;
    m_stale = true;
    ++m_changes;
    m_left->Turn(ExclusionTable());
    ShowState();
    emit Edited();
}

void CPreviewPage::Leave() {
    m_draft->exclusions = m_exclusions;
    Sheet().Pass();
}

PageLine CPreviewPage::Line() const {
    if (m_exclusions.isEmpty())
        return {};
    return {tr("Excluded:"), m_exclusions.size() == 1 ? m_exclusions.front()
                                                      : tr("%1 files and folders").arg(m_exclusions.size())};
}
