#include "backup/RestoreComponent.h"

#include "backup/ListOn.h"
#include "backup/OtherSnapshotsDlg.h"
#include "page/Console.h"
#include "page/NoticeLine.h"
#include "wizard/CheckTreeView.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

using Listing = TreeLevels::Listing;

namespace {

QString PathText(const QStringList& path) {
    return path.join(u'/');
}

bool IsFile(const TreeLevels::Node& node) {
    return node.parent && !node.isMessage && node.entry.icon == 0;
}

/// The files that are listed at and below a node, but for what is left out.
void AppendFiles(QStringList& files, const TreeLevels::Node& node, const CheckChoice& choice) {
    const QStringList path = TreeLevels::PathOf(node);
    if (node.isMessage || choice.StateOf(path).IsLeftOut())
        return;
    if (IsFile(node))
        files.append(PathText(path));
    for (const auto& child : node.children)
        AppendFiles(files, *child, choice);
}

} // namespace

CRestoreComponent::CRestoreComponent(const Console& console, std::shared_ptr<RestoreChoice> choice)
    : WizardPage(tr("Refine Restore Scope"), tr("Tick what to restore of the snapshot.")), m_console(console),
      m_choice(std::move(choice)), m_model(console.reader, *this, Lane::Service, nullptr),
      m_view(new CheckTreeView(m_model)), m_find(new ListOn(*m_view)), m_notice(new NoticeLine),
      m_others(new QPushButton(tr("In &other snapshots..."))) {
    auto* row = new QHBoxLayout;
    row->addWidget(m_others);
    row->addStretch();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_find);
    column->addWidget(m_view, 1);
    column->addLayout(row);
    column->addWidget(m_notice);
    m_view->setAccessibleName(Title());
    m_others->setAutoDefault(false);
    setFocusProxy(m_view);
    connect(&m_model, &CheckTreeModel::Listed, this, &CRestoreComponent::OnListed);
    connect(&m_model, &CheckTreeModel::ChoiceEdited, this, [this] {
        ShowWhatCanBeDone();
        emit Edited();
    });
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &CRestoreComponent::ShowWhatCanBeDone);
    connect(m_others, &QPushButton::clicked, this, &CRestoreComponent::ShowOthers);
    ShowWhatCanBeDone();
}

void CRestoreComponent::Fill() {
    const QModelIndex present = m_view->currentIndex();
    if (present.isValid() && !m_model.NodeAt(present).isMessage)
        m_wanted = TreeLevels::PathOf(m_model.NodeAt(present));
    m_notice->SetText({});
    m_model.ListFrom(ListSnapshot(m_console.service, m_choice->draft.snapshot, m_choice->set.type, m_known));
}

void CRestoreComponent::OnListed(const QStringList& path) {
    const TreeLevels::Node* node = m_model.Levels().Find(path);
    if (node && node->children.size() == 1 && node->children.front()->entry.canOpen)
        m_view->expand(m_model.IndexOf(*node->children.front()));
    WalkOn(node);
}

void CRestoreComponent::WalkOn(const TreeLevels::Node* listed) {
    if (!m_wanted)
        return;
    const TreeLevels::Node* node = &m_model.Levels().Root();
    const QStringList wanted = *m_wanted;
    for (const QString& key : wanted) {
        const bool hasFailed = node->listing == Listing::Failed && node == listed;
        if (node->listing != Listing::Listed && !hasFailed && node->entry.canOpen) {
            const QModelIndex index = m_model.IndexOf(*node);
            m_view->expand(index);
            return m_model.List(index); // goes on when that is listed
        }
        const TreeLevels::Node* child = m_model.Levels().Find(TreeLevels::PathOf(*node) + QStringList(key));
        if (!child)
            return EndWalk(*node, key);
        node = child;
    }
    EndWalk(*node);
}

void CRestoreComponent::EndWalk(const TreeLevels::Node& node, const QString& missing) {
    const QStringList wanted = *std::exchange(m_wanted, std::nullopt);
    if (node.parent)
        m_view->GoTo(node);
    if (missing.isEmpty())
        return;
    m_notice->SetText(node.parent ? tr("\"%1\" is not in this snapshot. What is shown is \"%2\".")
                                        .arg(PathText(wanted), PathText(TreeLevels::PathOf(node)))
                                  : tr("\"%1\" is not in this snapshot.").arg(PathText(wanted)));
}

void CRestoreComponent::ShowWhatCanBeDone() {
    const QModelIndex present = m_view->currentIndex();
    const bool file = present.isValid() && IsFile(m_model.NodeAt(present)) &&
                      m_model.Choice().StateOf(TreeLevels::PathOf(m_model.NodeAt(present))).ticked;
    m_others->setEnabled(file && m_choice->set.snapshots.size() > 1);
    m_others->setToolTip(file ? QString()
                              : tr("Choose a ticked file to see how it is in the other snapshots."));
}

void CRestoreComponent::ShowOthers() {
    const QStringList path = TreeLevels::PathOf(m_model.NodeAt(m_view->currentIndex()));
    auto* dialog = new OtherSnapshotsDlg(m_console, m_choice->set, PathText(path), window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        m_choice->snapshot = dialog->Chosen();
        m_choice->draft.snapshot = m_choice->set.place.SnapshotPath(dialog->Chosen().name);
        Fill();
        emit Edited();
    });
    dialog->open();
}

PageLine CRestoreComponent::Line() const {
    const TreeWalk walk = m_model.Walk();
    if (walk.selected.empty())
        return {{}, CreatedText(m_choice->snapshot)};
    const QString lead = walk.selected.size() == 1 ? NameOf(walk.selected.front())
                                                   : tr("%1 components").arg(walk.selected.size());
    return {walk.excluded.empty() ? lead : tr("%1, %2 left out").arg(lead).arg(walk.excluded.size()),
            CreatedText(m_choice->snapshot)};
}

/// As it is shown; of a writer's component with the writer before it.
QString CRestoreComponent::NameOf(const WalkedNode& node) const {
    if (m_choice->set.type != SetType::Application || !node.node)
        return PathText(node.path);
    QStringList names;
    for (const TreeLevels::Node* at = node.node; at->parent; at = at->parent)
        names.prepend(at->entry.name);
    return PathText(names);
}

std::optional<QStringList> CRestoreComponent::MissingPath(const TreeWalk& walk) const {
    for (const WalkedNode& node : walk.selected) {
        const TreeLevels::Node* above = node.node ? nullptr : &m_model.Levels().Root();
        for (const QString& key : node.path) {
            if (!above || above->listing != Listing::Listed)
                break;
            const TreeLevels::Node* below =
                m_model.Levels().Find(TreeLevels::PathOf(*above) + QStringList(key));
            if (!below)
                return node.path;
            above = below;
        }
    }
    return {};
}

void CRestoreComponent::Leave() {
    TreeWalk walk = m_model.Walk();
    if (walk.selected.empty())
        return Sheet().Stay({tr("Please select at least one component to restore!"), m_view});
    if (const auto missing = MissingPath(walk)) {
        m_model.SetTicked(*missing, false);
        return Sheet().Stay(
            {tr("\"%1\" is not in this snapshot, and is not ticked any more.").arg(PathText(*missing)),
             m_view});
    }
    RestoreDraft& draft = m_choice->draft;
    draft.components.clear();
    draft.exclusions.clear();
    m_choice->names.clear();
    m_choice->excludedNames.clear();
    m_choice->files.clear();
    for (const WalkedNode& node : walk.selected) {
        draft.components.append(PathText(node.path));
        m_choice->names.append(NameOf(node));
        if (node.node)
            AppendFiles(m_choice->files, *node.node, m_model.Choice());
    }
    for (const WalkedNode& node : walk.excluded) {
        draft.exclusions.append(PathText(node.path));
        m_choice->excludedNames.append(NameOf(node));
    }
    Sheet().Pass();
}
