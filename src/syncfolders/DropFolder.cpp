#include "syncfolders/DropFolder.h"

#include "list/BrenListCtrl.h"
#include "list/RecordTable.h"
#include "list/RecordView.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/LinkLabel.h"
#include "service/RequestText.h"
#include "service/ServiceExtensions.h"
#include "syncfolders/DropFolderChanges.h"
#include "syncfolders/SyncCommands.h"

#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int RestoreColumn = 6;

/// A row of the folder that is listed: one of its entries, or the way up.
struct StoredEntry {
    enum Kind { Up, Folder, File };

    QString name;
    Kind kind = File;

    friend bool operator==(const StoredEntry&, const StoredEntry&) = default;
};

QString LinkCell(const StoredEntry& entry) {
    return entry.kind == StoredEntry::File
               ? Cell::Icon(FileIcon, CDropFolder::tr("Click to see version history below"))
               : Cell::Icon(FolderIcon, CDropFolder::tr("Click to browse"));
}

QString TypeCell(const StoredEntry& entry) {
    return entry.kind == StoredEntry::File ? CDropFolder::tr("File") : CDropFolder::tr("Folder");
}

ReadResult ReadFolder(const ServiceClient& service, const QString& name, const QString& path,
                      RecordStream<StoredEntry>& rows, std::stop_token stop) {
    const auto listing = FetchStoredFolder(service, name, path, std::move(stop));
    if (!listing)
        return {ReadOutcome::Unavailable, {}};
    if (!path.isEmpty())
        rows.Put({u".."_s, StoredEntry::Up});
    for (const DavEntry& entry : listing->entries)
        rows.Put({entry.name, entry.isFolder ? StoredEntry::Folder : StoredEntry::File});
    return {};
}

RecordTable<StoredEntry> FilesTable(const ServiceClient& service, const QString& name, const QString& path) {
    return {.page = {.name = CDropFolder::tr("Files"),
                     .widths = u"StoredFiles"_s,
                     .empty = CDropFolder::tr("No versions are stored here yet."),
                     .failure = CDropFolder::tr("The service does not tell what is stored here."),
                     .lane = Lane::Service,
                     .subject = path},
            .columns = {{.title = {}, .width = 24, .cell = LinkCell, .name = CDropFolder::tr("Open")},
                        {CDropFolder::tr("Name"), 360, &StoredEntry::name},
                        {CDropFolder::tr("Type"), 80, TypeCell}},
            .id = {&StoredEntry::name, &StoredEntry::kind},
            .read = [service, name, path](RecordStream<StoredEntry>& rows, std::stop_token stop) {
                return ReadFolder(service, name, path, rows, std::move(stop));
            }};
}

QString RestoreCell(const FileVersion& version) {
    return version.canRevert ? Cell::Icon(ResumeIcon, CDropFolder::tr("Click to restore to this version"))
                             : QString();
}

QString OperationCell(const FileVersion& version) {
    return VersionOperationText(version.operation);
}

QString TimeCell(const FileVersion& version) {
    return Cell::Plain(StampText(version.stamp, CurrentStamp()));
}

/// A list that is not answered stays empty.
ReadResult ReadVersions(const ServiceClient& service, const QString& name, const QString& file,
                        RecordStream<FileVersion>& rows, std::stop_token stop) {
    if (file.isEmpty())
        return {};
    const ServiceAnswer answer = RequestVersions(service, name, file, std::move(stop));
    if (!answer)
        return {ReadOutcome::Unavailable, {}};
    rows.PutAll(VersionsOf(answer.body));
    return {};
}

RecordTable<FileVersion> VersionsTable(const ServiceClient& service, const QString& name, const QString& file,
                                       std::function<void(const FileVersion&)> revert) {
    return {
        .page = {.name = CDropFolder::tr("Versions"),
                 .widths = u"StoredVersions"_s,
                 .empty = file.isEmpty() ? CDropFolder::tr("Click a file above to see its versions.")
                                         : CDropFolder::tr("No version of this file is stored."),
                 .failure = CDropFolder::tr("The service does not tell the versions of this file."),
                 .lane = Lane::Service,
                 .subject = file},
        .columns = {{CDropFolder::tr("Version"), 80, &FileVersion::number},
                    {CDropFolder::tr("Op"), 60, OperationCell},
                    {CDropFolder::tr("Time"),
                     140,
                     {TimeCell, [](const FileVersion& version) { return StampNumber(version.stamp); }}},
                    {CDropFolder::tr("Base"), 60, &FileVersion::BaseText},
                    {CDropFolder::tr("Updater"), 110, &FileVersion::updater},
                    {CDropFolder::tr("From"), 120, &FileVersion::computer},
                    {.title = {}, .width = 24, .cell = RestoreCell, .name = CDropFolder::tr("Restore")}},
        .id = {&FileVersion::number, &FileVersion::stamp},
        .read =
            [service, name, file](RecordStream<FileVersion>& rows, std::stop_token stop) {
                return ReadVersions(service, name, file, rows, std::move(stop));
            },
        .commands = {{.caption = CDropFolder::tr("Restore to this Version"),
                      .run = [revert = std::move(revert)](RecordView&, const std::vector<TakenRow>& rows) {
                          revert(RecordOf<FileVersion>(rows.front()));
                      }}}};
}

QLabel* MakeText(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

CDropFolder::CDropFolder(const Console& console, SyncCommands& commands, const SyncFolder& folder)
    : CBrenPanel(console), m_commands(commands), m_folder(folder), m_offer(console.reader, *this) {
    SetHelp(tr("Use this panel to manage the versions of the file in cloud sync folder. You can restore file "
               "to any previous version."));
    SetToolbar({RefreshAction(tr("Refresh"))});
}

void CDropFolder::CreatePanel() {
    m_pathText = MakeText(tr("Current Path:") + u"[/]"_s);
    auto* sync = new LinkLabel(tr("<a>Sync</a>"));
    auto* open = new LinkLabel(tr("<a>Open Folder</a>"));
    m_force = new LinkLabel(tr("<a>Force Re-Sync</a>"));
    m_whyNot = MakeText({});
    Look::SetInk(*m_whyNot, Look::Muted);
    const ServiceClient& service = TheConsole().service;
    m_files = new RecordView(TheConsole(), FilesTable(service, m_folder.name, m_path));
    m_versions =
        new RecordView(TheConsole(), VersionsTable(service, m_folder.name, m_file,
                                                   [this](const FileVersion& version) { Revert(version); }));
    RepaintByTheMinute(*m_versions);

    auto* links = new QHBoxLayout;
    links->setSpacing(Look::PageMargin);
    links->addWidget(m_pathText, 1);
    for (QLabel* link : std::initializer_list<QLabel*>{sync, m_force, m_whyNot, open})
        links->addWidget(link);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    layout->setSpacing(Look::CardGap);
    layout->addLayout(links);
    layout->addWidget(m_files, 1);
    layout->addWidget(m_versions, 1);
    setFocusProxy(m_files);

    connect(sync, &LinkLabel::LinkClicked, this, [this] { m_commands.Sync(m_folder); });
    connect(m_force, &LinkLabel::LinkClicked, this, [this] { m_commands.ForceSync(m_folder); });
    connect(open, &LinkLabel::LinkClicked, this, [this] { m_commands.Open(m_folder.path); });
    connect(&m_files->List(), &CBrenListCtrl::LeftClicked, this,
            [this](int, int, const TakenRow& row) { OnFileClicked(row); });
    // The list itself tells nothing of a click on its first column, where the link is.
    connect(&m_files->List(), &QAbstractItemView::clicked, this, [this](const QModelIndex& cell) {
        if (cell.column() == 0)
            OnFileClicked(m_files->List().Rows().RowAt(cell.row()));
    });
    connect(&m_versions->List(), &CBrenListCtrl::LeftClicked, this,
            [this](int, int column, const TakenRow& row) { OnVersionClicked(column, row); });
    for (RecordView* view : {m_files, m_versions})
        connect(view, &RecordView::Changed, this, &CDropFolder::ShowState);
    ShowOffer({});
    ShowState();
}

void CDropFolder::Activate() {
    CBrenPanel::Activate();
    ReadOffer();
}

void CDropFolder::Reload() {
    if (!m_files)
        return;
    m_files->Read();
    m_versions->Read();
}

void CDropFolder::OpenFind() {
    emit m_files->List().FindRequested();
}

void CDropFolder::ShowState() {
    m_pathText->setText(tr("Current Path: ") + (m_path.isEmpty() ? u"/"_s : Look::OneLine(m_path)));
    TellFailure(!m_refusal.isEmpty() ? m_refusal : m_files->Failure());
}

void CDropFolder::Browse(const QString& path) {
    m_refusal = ListedPathRefusal(path);
    if (m_refusal.isEmpty()) {
        m_path = path;
        m_files->Turn(FilesTable(TheConsole().service, m_folder.name, m_path));
    }
    ShowState();
}

void CDropFolder::ListVersions(const QString& file) {
    m_file = file;
    m_versions->Turn(VersionsTable(TheConsole().service, m_folder.name, m_file,
                                   [this](const FileVersion& version) { Revert(version); }));
}

void CDropFolder::ShowVersions(const QString& file) {
    EnsureCreated();
    Browse(ParentPath(file));
    ListVersions(file);
}

void CDropFolder::OnFileClicked(const TakenRow& row) {
    const StoredEntry& entry = RecordOf<StoredEntry>(row);
    m_refusal.clear();
    if (entry.kind == StoredEntry::Up)
        return Browse(ParentPath(m_path));
    if (entry.kind == StoredEntry::Folder)
        return Browse(ChildPath(m_path, entry.name));
    ListVersions(ChildPath(m_path, entry.name));
    ShowState();
}

void CDropFolder::OnVersionClicked(int column, const TakenRow& row) {
    if (column == RestoreColumn)
        Revert(RecordOf<FileVersion>(row));
}

void CDropFolder::Revert(const FileVersion& version) {
    if (version.canRevert)
        m_commands.Revert(m_folder, m_file, version, [panel = QPointer(this)] {
            if (panel)
                panel->Reload();
        });
}

void CDropFolder::ReadOffer() {
    m_offer.Load(
        Lane::Service,
        [service = TheConsole().service](std::stop_token stop) {
            return TakesConsoleRecords(service, std::move(stop));
        },
        [this](const Loaded<bool>& offered) {
            if (offered.outcome != LoadOutcome::Cancelled)
                ShowOffer(offered.value);
        });
}

/// To compare all files again is asked for in a form of our own.
void CDropFolder::ShowOffer(std::optional<bool> offered) {
    const QString whyNot = offered && *offered ? QString()
                           : offered           ? NoConsoleRecordsText()
                                               : tr("The service has not told whether it offers this.");
    m_force->setEnabled(whyNot.isEmpty());
    m_force->setToolTip(Look::ToolTip(whyNot));
    m_force->setAccessibleDescription(whyNot);
    m_whyNot->setText(offered ? whyNot : QString());
    m_whyNot->setVisible(!m_whyNot->text().isEmpty());
}
