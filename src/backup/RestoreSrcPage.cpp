#include "backup/RestoreSrcPage.h"

#include "clouddrive/RemoteLevels.h"
#include "lanes/ProgressNote.h"
#include "look/IconRegistry.h"
#include "page/Console.h"
#include "service/RequestText.h"
#include "service/VirtualDirectories.h"
#include "wizard/CheckTreeView.h"

#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The virtual directories, and below them their folders.
CheckTreeModel::Lister ListStorage(const ServiceClient& service) {
    return [service, folders = ListRemoteFolders(service, {})](const QStringList& keys,
                                                               const std::stop_token& stop) {
        if (!keys.isEmpty())
            return folders(keys, stop);
        const auto records = service.GetVdirList(stop);
        if (!records)
            return std::optional(TreeLevel{{}, NoVdirListText()});
        TreeLevel level;
        for (const VDirRecord& record : *records) {
            const bool mounted = MeaningOfStatus(record.status).state == VDirState::Mounted;
            level.entries.push_back({record.name, record.name, FolderIcon, true, true,
                                     mounted ? QString() : VDirStatusText(record.status)});
        }
        return std::optional(level);
    };
}

QString PathOf(const QStringList& keys) {
    return RemoteLevels().PathOf(keys);
}

std::optional<DavListing> List(const ServiceClient& service, const QString& path,
                               const std::stop_token& stop) {
    if (!ListedPathRefusal(path).isEmpty())
        return {};
    return FetchDavListing(service, path, stop, HiddenEntries::Show);
}

} // namespace

CRestoreSrcPage::CRestoreSrcPage(const Console& console, std::shared_ptr<RestoreChoice> choice)
    : WizardPage(tr("Where to Restore From"),
                 tr("Please check the box next to the folder you wish to select.")),
      m_console(console), m_choice(std::move(choice)),
      m_model(console.reader, *this, Lane::Service, ListStorage(console.service)),
      m_view(new CheckTreeView(m_model)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_view);
    m_view->setAccessibleName(Title());
    setFocusProxy(m_view);
    connect(&m_model, &CheckTreeModel::ChoiceEdited, this, &CRestoreSrcPage::KeepOneTick);
}

void CRestoreSrcPage::Fill() {
    m_model.List();
}

/// The folder that was ticked last is the only one; unticking one below a ticked one ticks that in its place.
void CRestoreSrcPage::KeepOneTick() {
    if (m_settling)
        return;
    const TreeWalk walk = m_model.Walk();
    QStringList wanted;
    for (const WalkedNode& node : walk.selected)
        if (wanted.isEmpty() || node.path != m_ticked)
            wanted = node.path;
    if (!walk.excluded.empty())
        wanted = walk.excluded.front().path;
    m_settling = true;
    for (const WalkedNode& node : walk.selected)
        m_model.SetTicked(node.path, false);
    if (!wanted.isEmpty())
        m_model.SetTicked(wanted, true);
    m_settling = false;
    if (m_ticked == wanted)
        return;
    m_ticked = wanted;
    m_found.reset();
    emit Edited();
    if (!m_ticked.isEmpty())
        LookForSets();
}

CRestoreSrcPage::Found CRestoreSrcPage::LookIn(const ServiceClient& service, const QString& folder,
                                               ProgressNote& note, const std::stop_token& stop) {
    Found found;
    const auto lookAt = [&](const QString& target, qint64 done, qint64 total) {
        const QString container = BackupSetPlace{target, {}}.Container();
        note.Tell({done, total, tr("Check backup set: ") + container});
        const auto sets = List(service, container, stop);
        if (!sets)
            return;
        note.Tell({done, total, tr("Found backup set container, checking backup sets...")});
        for (const DavEntry& set : sets->entries)
            if (set.isFolder)
                found.places.push_back({target, set.name});
    };
    lookAt(folder, 0, 0);
    const auto children = List(service, folder, stop);
    if (!children)
        found.failure = tr("\"%1\" could not be listed.").arg(folder);
    qint64 done = 0;
    for (const DavEntry& child : children ? children->entries : std::vector<DavEntry>()) {
        if (stop.stop_requested())
            break;
        ++done;
        if (child.isFolder && child.name != BackupContainer)
            lookAt(folder + u'/' + child.name, done, qint64(children->entries.size()));
    }
    return found;
}

void CRestoreSrcPage::LookForSets() {
    auto note = std::make_shared<ProgressNote>();
    Sheet().Read(
        *this, Lane::Service, tr("Please wait while loading backup set information."),
        [service = m_console.service, folder = PathOf(m_ticked), note](const std::stop_token& stop) {
            return LookIn(service, folder, *note, stop);
        },
        [this, ticked = m_ticked](const Loaded<Found>& found) {
            if (ticked == m_ticked)
                m_found = found ? *found : Found{{}, found.why};
            return QString();
        },
        note);
}

PageLine CRestoreSrcPage::Line() const {
    if (!m_found)
        return {PathOf(m_ticked), {}};
    if (!m_found->places.empty())
        return {PathOf(m_ticked), tr("Found available backup data. Please click 'Next' to continue.")};
    return {PathOf(m_ticked),
            m_found->failure.isEmpty()
                ? tr("Didn't find any per-application backup information from selected cloud storage.")
                : m_found->failure};
}

void CRestoreSrcPage::Leave() {
    if (m_ticked.isEmpty())
        return Sheet().Stay({tr("You need to select a cloud storage to continue."), m_view});
    if (!m_found) {
        LookForSets();
        return Sheet().Stay();
    }
    if (m_found->places.empty())
        return Sheet().Stay({Line().rest, m_view});
    m_choice->storage = PathOf(m_ticked);
    m_choice->places = m_found->places;
    Sheet().Pass();
}
