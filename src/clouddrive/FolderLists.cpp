#include "clouddrive/FolderLists.h"

#include "clouddrive/SetKeyDlg.h"
#include "list/BrenListCtrl.h"
#include "list/RecordTable.h"
#include "list/RecordView.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/SettingNews.h"
#include "page/UserPrompts.h"

#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Whom a row's command, which knows the view alone, is passed on to.
using Removal = std::function<void(const std::vector<ListedFolder>&)>;

RecordTable<ListedFolder> TableOf(const FolderListKind& kind, const ServiceClient& service,
                                  const Removal& remove) {
    return {
        .page = {.name = kind.name,
                 .widths = kind.widths,
                 .empty = kind.empty,
                 .failure = FolderListPage::tr("The service does not tell which folders there are."),
                 .lane = Lane::Service},
        .columns = {{.title = FolderListPage::tr("Folder Name"), .width = 200, .cell = &ListedFolder::path}},
        .id = {&ListedFolder::path, &ListedFolder::among},
        .read =
            [list = kind.list, service](RecordStream<ListedFolder>& rows, std::stop_token stop) {
                const SettingValue<QStringList> paths = ReadList(service, list, std::move(stop));
                rows.PutAll(ListedFolders(paths.value));
                return ReadResult{paths.WasRead() ? ReadOutcome::Done : ReadOutcome::Unavailable, {}};
            },
        .commands = {{.caption = kind.remove,
                      .icon = DeleteIcon,
                      .words = kind.linkWords,
                      .run =
                          [remove](RecordView&, const std::vector<TakenRow>& rows) {
                              std::vector<ListedFolder> folders;
                              folders.reserve(rows.size());
                              for (const TakenRow& row : rows)
                                  folders.push_back(RecordOf<ListedFolder>(row));
                              remove(folders);
                          },
                      .key = Qt::Key_Delete}}};
}

/// The paths, a line each; of many the first ones and how many more there are.
QString Named(const std::vector<ListedFolder>& folders) {
    constexpr std::size_t Most = 10;
    QStringList lines;
    for (std::size_t i = 0; i < std::min(folders.size(), Most); ++i)
        lines += folders[i].path;
    if (folders.size() > Most)
        lines += FolderListPage::tr("and %1 more").arg(folders.size() - Most);
    return lines.join(u'\n');
}

} // namespace

/// How a change went, and after an addition what is known of the password then.
struct FolderListPage::Change {
    ListChange list;
    std::optional<PasswordState> password;
};

FolderListPage::FolderListPage(const Console& console, FolderListKind kind)
    : CBrenPanel(console), m_kind(std::move(kind)) {}

void FolderListPage::CreatePanel() {
    const Removal remove = [this](const std::vector<ListedFolder>& folders) { AskAndRemove(folders); };
    m_view = new RecordView(TheConsole(), TableOf(m_kind, TheConsole().service, remove));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    layout->addWidget(m_view);
    setFocusProxy(m_view);
    SetHelp(m_kind.help);
    SetToolbar({RefreshAction()});
    connect(m_view, &RecordView::Changed, this, &FolderListPage::ShowState);
    connect(&TheConsole().settingNews, &SettingNews::Written, this, [this](const QString& setting) {
        if (setting == QLatin1String(EncryptionPassword))
            m_passwordNote.clear();
        ShowState();
    });
    ShowState();
}

void FolderListPage::Reload() {
    m_passwordNote.clear();
    if (m_view)
        m_view->Read();
}

void FolderListPage::OpenFind() {
    emit m_view->List().FindRequested();
}

void FolderListPage::ShowState() {
    QStringList failures;
    if (!m_view->Failure().isEmpty())
        failures +=
            tr("The service does not tell which folders there are, so the list cannot be changed now.");
    if (!m_passwordNote.isEmpty())
        failures += m_passwordNote;
    TellFailure(failures.join(u' '));
    const bool ready = m_view->Failure().isEmpty() && !m_busy;
    std::vector<FrameAction> actions{{m_kind.add, FolderIcon, [this] { AddFolder(); }, ready}};
    if (m_kind.needsPassword)
        actions.push_back({tr("Set Password"), EditIcon, [this] { SetPassword(); }});
    actions.push_back(RefreshAction());
    SetSideActions(std::move(actions));
}

void FolderListPage::SetBusy(bool busy) {
    m_busy = busy;
    ShowState();
}

void FolderListPage::AddFolder() {
    if (m_busy)
        return;
    SetBusy(true);
    RemoteFolderRequest request{.caption = tr("Select folder")};
    request.refuse = [list = m_kind.list](const QString& path) { return EntryRefusal(list, path); };
    TheConsole().prompts.PickRemoteFolder(this, request, [this](const std::optional<QString>& path) {
        SetBusy(false);
        if (path)
            Send(
                tr("The folder \"%1\" was not added.").arg(*path),
                [list = m_kind.list, path = *path](const ServiceClient& service, std::stop_token stop) {
                    return ::AddFolder(service, list, path, std::move(stop));
                },
                true);
    });
}

void FolderListPage::AskAndRemove(const std::vector<ListedFolder>& folders) {
    if (m_busy || !m_view->Failure().isEmpty())
        return;
    SetBusy(true);
    const auto answer = [this, folders](bool yes) {
        SetBusy(false);
        if (yes)
            Send(
                tr("The list was not changed."),
                [list = m_kind.list, folders](const ServiceClient& service, std::stop_token stop) {
                    return RemoveFolders(service, list, folders, std::move(stop));
                },
                false);
    };
    TheConsole().prompts.AskYesNo(this, m_kind.question + u'\n' + Named(folders), answer);
}

void FolderListPage::Send(const QString& failed, Work work, bool addsFolder) {
    SetBusy(true);
    const bool asksPassword = addsFolder && m_kind.needsPassword;
    Loader().Command(
        Lane::Service,
        [service = TheConsole().service, work = std::move(work), asksPassword](std::stop_token stop) {
            Change change{work(service, stop), {}};
            if (change.list.stored && asksPassword)
                change.password = ReadPasswordState(service, stop);
            return change;
        },
        [this, failed](const Loaded<Change>& change) {
            SetBusy(false);
            EndChange(failed, change ? *change : Change{{.failure = change.why}, {}});
        });
}

void FolderListPage::EndChange(const QString& failed, const Change& change) {
    m_view->Read();
    if (!change.list.stored)
        TheConsole().prompts.ShowMessage(this, failed + u'\n' + change.list.failure);
    else if (change.password)
        OfferPassword(*change.password);
}

void FolderListPage::OfferPassword(PasswordState state) {
    m_passwordNote = state == PasswordState::NotRead
                         ? tr("The service does not tell whether an encryption password is set.")
                         : QString();
    ShowState();
    if (state != PasswordState::Missing)
        return;
    TheConsole().prompts.Ask(
        this,
        {.text = tr("Encryption requires a password which has not been set. Do you want to set it now?"),
         .destroys = false},
        [this](bool yes) {
            if (yes)
                SetPassword();
        });
}

void FolderListPage::SetPassword() {
    if (findChild<CSetKeyDlg*>())
        return;
    const Console& console = TheConsole();
    (new CSetKeyDlg(console.service, console.reader, console.prompts, this))->Open(console.settingNews);
}

CEncFolderList::CEncFolderList(const Console& console)
    : FolderListPage(
          console,
          {.list = EncryptedFolders,
           .name = tr("Encrypted Folders"),
           .widths = u"EncryptedFolders"_s,
           .help =
               tr("Use encrypted folders to keep your data secure. You must set a password which will be "
                  "used to generate an encryption key. The contents of your encrypted folder will only be "
                  "visible using your password. The password cannot be retrieved if you forget it."),
           .empty = tr("No folder is encrypted."),
           .add = tr("Add New Encrypted Folder"),
           .remove = tr("Disable Encryption"),
           .linkWords = tr("click to disable encryption for the folder"),
           .question = tr("Do you really want to disable file encryption for the folder?"),
           .needsPassword = true}) {}

CCompressedFolderList::CCompressedFolderList(const Console& console)
    : FolderListPage(
          console,
          {.list = CompressedFolders,
           .name = tr("Compressed Folders"),
           .widths = u"CompressedFolders"_s,
           .help = tr("Manage compressed folders. Click the folder icon on the left to add a folder to the "
                      "list of compressed folders. All files in these folders will be compressed before "
                      "transmission."),
           .empty = tr("No folder is compressed."),
           .add = tr("Add New Compressed Folder"),
           .remove = tr("Disable Compression"),
           .linkWords = tr("click to disable compression for the folder"),
           .question = tr("Do you really want to disable file compression for the folder?")}) {}
