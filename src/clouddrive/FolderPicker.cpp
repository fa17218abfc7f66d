#include "clouddrive/FolderPicker.h"

#include "page/NoticeLine.h"
#include "service/RequestText.h"
#include "wizard/CheckTreeView.h"
#include "wizard/TreeFindField.h"
#include "zep/Mui.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

using Listing = TreeLevels::Listing;

namespace {

bool StaysInHome() {
    return ZEPMuiGetBrandingStringW(Branding::HomeFolderOnly).compare("yes"_L1, Qt::CaseInsensitive) == 0;
}

RemoteLevels LevelsFor(const RemoteFolderRequest& request) {
    const bool home = StaysInHome();
    // What shows the home folder as the root has to list the root.
    return {home && !request.homeIsRoot ? u"/home"_s : QString(),
            request.hiddenToo ? HiddenEntries::Show : HiddenEntries::LeaveOut, request.oneLevel,
            request.homeIsRoot && home};
}

/// The child of this name, before one that differs in case; null when there is none.
const TreeLevels::Node* ChildNamed(const TreeLevels::Node& node, const QString& name) {
    const TreeLevels::Node* similar = nullptr;
    for (const auto& child : node.children) {
        if (child->isMessage)
            continue;
        if (child->entry.key == name)
            return child.get();
        if (!similar && child->entry.key.compare(name, Qt::CaseInsensitive) == 0)
            similar = child.get();
    }
    return similar;
}

/// What became of a new folder: it is there already, or was asked for.
struct NewFolder {
    QString existing = {}; ///< its name as it is written
    ServiceAnswer answer = {};
};

NewFolder FindOrMake(const ServiceClient& service, const QString& parent, const QString& name,
                     HiddenEntries hidden, const std::stop_token& stop) {
    if (const auto listing = FetchDavListing(service, parent, stop, hidden))
        for (const DavEntry& entry : listing->entries)
            if (entry.isFolder && entry.name.compare(name, Qt::CaseInsensitive) == 0)
                return {entry.name};
    return {{}, CreateDavFolder(service, parent, name, stop)};
}

} // namespace

FolderPicker::FolderPicker(const Console& console, RemoteFolderRequest request, MountWizard mount,
                           Enter enter)
    : m_console(console), m_request(std::move(request)), m_mount(std::move(mount)), m_enter(enter),
      m_levels(LevelsFor(m_request)),
      m_model(console.reader, *this, Lane::Service, ListRemoteFolders(console.service, m_levels),
              CheckTreeModel::Boxes::None),
      m_loader(console.reader, *this), m_view(new CheckTreeView(m_model)), m_path(new QLineEdit),
      m_notice(new NoticeLine), m_buttons(new QHBoxLayout) {
    BuildLayout();
    connect(&m_model, &CheckTreeModel::Listed, this, &FolderPicker::OnListed);
    connect(&m_model, &QAbstractItemModel::rowsAboutToBeRemoved, this, [this] {
        if (m_lost.isEmpty())
            m_lost = Path();
    });
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FolderPicker::OnSelected);
    connect(m_path, &QLineEdit::textChanged, this, &FolderPicker::Changed);
}

void FolderPicker::Start() {
    m_model.List();
    if (!m_request.start.isEmpty())
        GoTo(m_request.start, Arrival::SelectAsFar);
}

void FolderPicker::BuildLayout() {
    auto* pathLabel = new QLabel(tr("&Path:"));
    pathLabel->setBuddy(m_path);
    m_path->installEventFilter(this);
    m_view->setAccessibleName(tr("Folders"));
    m_view->installEventFilter(this);
    auto* newFolder = new QPushButton(tr("&New Sub-folder"));
    newFolder->setAutoDefault(false);
    connect(newFolder, &QPushButton::clicked, this, &FolderPicker::AskNewFolder);

    auto* path = new QHBoxLayout;
    path->addWidget(pathLabel);
    path->addWidget(m_path);
    m_buttons->addWidget(newFolder);
    if (m_mount && !StaysInHome()) {
        auto* mount = new QPushButton(tr("&Mount Cloud Storage"));
        mount->setAutoDefault(false);
        connect(mount, &QPushButton::clicked, this, &FolderPicker::Mount);
        m_buttons->addWidget(mount);
    }
    m_buttons->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);
    column->addLayout(path);
    column->addWidget(new TreeFindField(*m_view, tr("Find a folder"), TreeFindField::Others::Hidden));
    column->addWidget(m_view, 1);
    column->addWidget(m_notice);
    column->addLayout(m_buttons);
    setFocusProxy(m_view);
}

void FolderPicker::AddButtons(QWidget* buttons) {
    m_buttons->addWidget(buttons);
}

const TreeLevels::Node* FolderPicker::Selected() const {
    const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
    if (selected.isEmpty() || m_model.NodeAt(selected.front()).isMessage)
        return nullptr;
    return &m_model.NodeAt(selected.front());
}

QString FolderPicker::Path() const {
    const TreeLevels::Node* selected = Selected();
    return selected ? m_levels.PathOf(TreeLevels::PathOf(*selected)) : QString();
}

bool FolderPicker::IsTypedPathSelected() const {
    return Selected() &&
           m_path->text().split(u'/', Qt::SkipEmptyParts) == Path().split(u'/', Qt::SkipEmptyParts);
}

void FolderPicker::OnSelected() {
    m_walk.reset();
    if (Selected()) {
        m_lost.clear();
        m_notice->SetText({});
        m_path->setText(Path());
    }
    emit Changed();
}

void FolderPicker::GoTo(const QString& path, Arrival arrival) {
    const std::optional<QStringList> keys = m_levels.KeysOf(path);
    if (keys) {
        m_walk = {path, *keys, arrival};
        WalkOn();
    } else if (arrival != Arrival::SelectAsFar) {
        m_notice->SetText(tr("\"%1\" is not below \"%2\".").arg(path, m_levels.start));
    }
}

void FolderPicker::WalkOn(const TreeLevels::Node* listed) {
    if (!m_walk)
        return;
    const TreeLevels::Node* node = &m_model.Levels().Root();
    for (const QString& key : QStringList(m_walk->keys)) {
        const bool hasFailed = node->listing == Listing::Failed && node == listed;
        if (node->listing != Listing::Listed && !hasFailed && node->entry.canOpen) {
            const QModelIndex index = m_model.IndexOf(*node);
            m_view->expand(index);      // should it fail, it stands there why
            return m_model.List(index); // goes on when that is listed
        }
        const TreeLevels::Node* child = ChildNamed(*node, key);
        if (!child)
            return EndWalk(*node, key);
        node = child;
    }
    EndWalk(*node);
}

void FolderPicker::EndWalk(const TreeLevels::Node& node, const QString& missing) {
    const Walk walk = *std::exchange(m_walk, std::nullopt);
    if (node.parent)
        m_view->GoTo(node);
    if (missing.isEmpty()) {
        if (walk.arrival == Arrival::Take)
            Take();
        return;
    }
    if (walk.arrival == Arrival::SelectAsFar)
        return;
    m_path->setText(walk.path); // to be mended
    m_notice->SetText(node.listing == Listing::Failed
                          ? node.children.front()->entry.name
                          : tr("There is no folder \"%1\" in \"%2\".")
                                .arg(missing, m_levels.PathOf(TreeLevels::PathOf(node)) + u'/'));
}

void FolderPicker::OnListed(const QStringList& keys) {
    if (!m_walk && !m_lost.isEmpty())
        GoTo(std::exchange(m_lost, {}), Arrival::SelectAsFar);
    WalkOn(m_model.Levels().Find(keys));
}

QString FolderPicker::TypedPath() const {
    const QStringList names = m_path->text().split(u'/', Qt::SkipEmptyParts);
    return names.isEmpty() ? QString() : u'/' + names.join(u'/');
}

void FolderPicker::Take() {
    if (!IsTypedPathSelected())
        return GoTo(m_path->text(), Arrival::Take);
    const QString refusal = ListedPathRefusal(Path());
    const QString why = refusal.isEmpty() && m_request.refuse ? m_request.refuse(Path()) : refusal;
    m_notice->SetText(why);
    if (why.isEmpty())
        emit Taken();
}

void FolderPicker::Refresh() {
    m_view->ListPresentLevelAgain();
}

bool FolderPicker::eventFilter(QObject* watched, QEvent* event) {
    const auto* key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr;
    if (!key || (key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter))
        return QWidget::eventFilter(watched, event);
    // A level that failed is listed again.
    if (watched == m_view && (m_enter == Enter::Opens || !Selected()))
        return false;
    if (m_enter == Enter::Takes && (watched == m_view || IsTypedPathSelected()))
        Take();
    else if (IsTypedPathSelected())
        return false;
    else
        GoTo(m_path->text(), Arrival::Select);
    return true;
}

void FolderPicker::AskNewFolder() {
    if (!Selected())
        return m_console.prompts.ShowMessage(this, ZEPMuiGetStringW(Message::SelectFolderFirst));
    const QString parent = Path();
    TextRequest request;
    request.title = ZEPMuiGetStringW(Message::NewFolderTitle);
    request.label = tr("A new folder in \"%1\":").arg(parent);
    request.text = tr("new folder");
    request.refuse = [parent](const QString& name) { return NewFolderRefusal(parent, name); };
    m_console.prompts.AskText(this, request, [this, parent](const std::optional<QString>& name) {
        if (name)
            MakeFolder(parent, *name);
    });
}

void FolderPicker::MakeFolder(const QString& parent, const QString& name) {
    if (std::exchange(m_makesFolder, true))
        return;
    m_notice->SetText(tr("\"%1\" is being made...").arg(name));
    m_loader.Command(
        Lane::Service,
        [service = m_console.service, parent, name, hidden = m_levels.hidden](std::stop_token stop) {
            return FindOrMake(service, parent, name, hidden, stop);
        },
        [this, parent, name](const Loaded<NewFolder>& made) {
            m_makesFolder = false;
            m_notice->SetText({});
            if (made && !made->existing.isEmpty())
                return Refill(parent + u'/' + made->existing);
            if (made && made->answer)
                return Refill(parent + u'/' + name);
            m_console.prompts.ShowMessage(this, ZEPMuiGetStringW(Message::FolderNotCreated));
        });
}

void FolderPicker::Mount() {
    m_mount(m_console, this, [picker = QPointer<FolderPicker>(this)](bool) {
        if (picker)
            picker->Refill(picker->Path());
    });
}

void FolderPicker::Refill(const QString& path) {
    m_levels.start.clear();
    m_model.ListFrom(ListRemoteFolders(m_console.service, m_levels));
    if (!path.isEmpty())
        GoTo(path, Arrival::Select);
}
