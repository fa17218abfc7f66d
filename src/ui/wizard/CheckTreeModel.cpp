#include "wizard/CheckTreeModel.h"

#include "look/IconRegistry.h"
#include "look/Look.h"

using namespace Qt::Literals::StringLiterals;

using Listing = TreeLevels::Listing;

namespace {

bool IsBelow(const TreeLevels::Node* node, const TreeLevels::Node& above) {
    while (node && node != &above)
        node = node->parent;
    return node;
}

} // namespace

CheckTreeModel::CheckTreeModel(Reader& reader, QWidget& page, Lane lane, Lister lister, Boxes boxes)
    : m_reader(reader), m_page(page), m_lane(lane), m_lister(std::move(lister)), m_boxes(boxes) {}

CheckTreeModel::~CheckTreeModel() = default;

TreeLevels::Node& CheckTreeModel::Node(const QModelIndex& index) const {
    return index.isValid() ? *static_cast<TreeLevels::Node*>(index.internalPointer()) : m_levels.Root();
}

QModelIndex CheckTreeModel::IndexOf(const TreeLevels::Node& node) const {
    return node.parent ? createIndex(node.row, 0, &node) : QModelIndex();
}

void CheckTreeModel::List(const QModelIndex& index) {
    TreeLevels::Node& node = Node(index);
    if (node.isMessage)
        Ask(*node.parent);
    else if (node.listing != Listing::Listed && node.entry.canOpen)
        Ask(node);
}

void CheckTreeModel::ListAgain(const QModelIndex& index) {
    TreeLevels::Node& node = Node(index);
    if (node.listing != Listing::NotAsked)
        Ask(node.isMessage ? *node.parent : node);
}

void CheckTreeModel::ListFrom(Lister lister) {
    m_lister = std::move(lister);
    m_asking.clear();
    Replace(m_levels.Root(), {});
    Ask(m_levels.Root());
}

void CheckTreeModel::Ask(TreeLevels::Node& node) {
    if (m_asking.contains(&node))
        return;
    // The loader is the window's: a level goes on being listed while another page of the wizard is shown.
    auto& loader = m_asking[&node] = std::make_unique<PageLoader>(m_reader, *m_page.window());
    node.listing = Listing::Asking;
    TellRow(node);
    loader->Load(
        m_lane,
        [lister = m_lister, path = TreeLevels::PathOf(node)](std::stop_token stop) {
            return lister(path, stop);
        },
        [this, &node](const Loaded<TreeLevel>& loaded) { End(node, loaded); });
}

void CheckTreeModel::End(TreeLevels::Node& node, const Loaded<TreeLevel>& loaded) {
    const std::unique_ptr<PageLoader> ended = std::move(m_asking.extract(&node).mapped());
    if (loaded.outcome == LoadOutcome::Cancelled) {
        node.listing = node.children.empty() ? Listing::NotAsked : Listing::Listed;
        TellRow(node);
        return;
    }
    Replace(node, loaded ? *loaded : TreeLevel{{}, tr("This could not be listed")});
    emit Listed(TreeLevels::PathOf(node));
}

void CheckTreeModel::Replace(TreeLevels::Node& node, TreeLevel level) {
    const QModelIndex parent = IndexOf(node);
    if (!node.children.empty()) {
        beginRemoveRows(parent, 0, int(node.children.size()) - 1);
        std::erase_if(m_asking, [&node](const auto& asking) { return IsBelow(asking.first, node); });
        node.children.clear();
        endRemoveRows();
    }
    auto children = TreeLevels::MakeChildren(node, std::move(level));
    if (!children.empty()) {
        beginInsertRows(parent, 0, int(children.size()) - 1);
        node.children = std::move(children);
        endInsertRows();
    }
    TellRow(node);
}

void CheckTreeModel::SetLevel(const QStringList& path, TreeLevel level) {
    const TreeLevels::Node* node = m_levels.Find(path);
    if (!node)
        return;
    m_asking.erase(node);
    Replace(Node(IndexOf(*node)), std::move(level));
}

void CheckTreeModel::Toggle(const QModelIndex& index) {
    const TreeLevels::Node& node = Node(index);
    const QVariant check = CheckOf(node);
    if (check.isValid())
        SetTicked(TreeLevels::PathOf(node), check.toInt() != Qt::Checked);
}

void CheckTreeModel::SetTicked(const QStringList& path, bool ticked) {
    const QStringList changed =
        m_choice.Set(path, ticked, [this](const QStringList& level) { return m_levels.KeysBelow(level); });
    if (const TreeLevels::Node* node = m_levels.Find(changed)) {
        for (const TreeLevels::Node* above = node; above->parent; above = above->parent)
            TellRow(*above);
        TellBelow(*node);
    }
    emit ChoiceEdited();
}

void CheckTreeModel::TellRow(const TreeLevels::Node& node) {
    const QModelIndex index = IndexOf(node);
    if (index.isValid())
        emit dataChanged(index, index);
}

void CheckTreeModel::TellBelow(const TreeLevels::Node& node) {
    if (node.children.empty())
        return;
    emit dataChanged(IndexOf(*node.children.front()), IndexOf(*node.children.back()),
                     {Qt::CheckStateRole, NoteRole, IsLeftOutRole});
    for (const auto& child : node.children)
        TellBelow(*child);
}

QModelIndex CheckTreeModel::index(int row, int column, const QModelIndex& parent) const {
    const TreeLevels::Node& node = Node(parent);
    if (column != 0 || row < 0 || std::size_t(row) >= node.children.size())
        return {};
    return createIndex(row, 0, node.children[std::size_t(row)].get());
}

QModelIndex CheckTreeModel::parent(const QModelIndex& index) const {
    const TreeLevels::Node& node = Node(index);
    return node.parent ? IndexOf(*node.parent) : QModelIndex();
}

int CheckTreeModel::rowCount(const QModelIndex& parent) const {
    return int(Node(parent).children.size());
}

int CheckTreeModel::columnCount(const QModelIndex&) const {
    return 1;
}

bool CheckTreeModel::hasChildren(const QModelIndex& parent) const {
    const TreeLevels::Node& node = Node(parent);
    return node.entry.canOpen && (node.listing != Listing::Listed || !node.children.empty());
}

Qt::ItemFlags CheckTreeModel::flags(const QModelIndex& index) const {
    if (!index.isValid())
        return {};
    const TreeLevels::Node& node = Node(index);
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (CheckOf(node).isValid())
        flags |= Qt::ItemIsUserCheckable;
    if (!node.entry.canOpen)
        flags |= Qt::ItemNeverHasChildren;
    return flags;
}

QVariant CheckTreeModel::CheckOf(const TreeLevels::Node& node) const {
    if (m_boxes == Boxes::None || !node.entry.canTick || !node.parent)
        return {};
    const CheckChoice::State state = m_choice.StateOf(TreeLevels::PathOf(node));
    return int(state.ticked ? Qt::Checked : state.tickedBelow > 0 ? Qt::PartiallyChecked : Qt::Unchecked);
}

QString CheckTreeModel::NoteOf(const TreeLevels::Node& node) const {
    const CheckChoice::State state = m_choice.StateOf(TreeLevels::PathOf(node));
    QStringList notes{node.entry.note};
    if (state.tickedBelow > 0)
        notes.append(tr("%1 ticked below").arg(state.tickedBelow));
    if (state.leftOut > 0)
        notes.append(tr("all but %1").arg(state.leftOut));
    if (state.IsLeftOut())
        notes.append(tr("left out"));
    notes.removeAll({});
    return notes.join(u" \u00B7 "_s);
}

QVariant CheckTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const TreeLevels::Node& node = Node(index);
    const auto name = [&] {
        // What is behind the name while it is being listed is told so.
        return node.listing == Listing::Asking ? node.entry.name + tr(" (Loading...)") : node.entry.name;
    };
    switch (role) {
    case Qt::DisplayRole:
        return name();
    case Qt::DecorationRole:
        return node.entry.icon ? IconRegistry::Icon(node.entry.icon, Look::Accent) : QVariant();
    case Qt::CheckStateRole:
        return CheckOf(node);
    case NoteRole:
        return node.isMessage ? tr("Try again") : NoteOf(node);
    case IsMessageRole:
        return node.isMessage;
    case IsLeftOutRole:
        return m_choice.StateOf(TreeLevels::PathOf(node)).IsLeftOut();
    case Qt::AccessibleTextRole:
    case Qt::ToolTipRole: {
        QStringList words{name(), data(index, NoteRole).toString()};
        words.removeAll({});
        const QString text = words.join(u", "_s);
        return role == Qt::ToolTipRole ? Look::ToolTip(text) : text;
    }
    default:
        return {};
    }
}

bool CheckTreeModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole || !CheckOf(Node(index)).isValid() || CheckOf(Node(index)) == value)
        return false;
    Toggle(index);
    return true;
}
