#include "wizard/TreeLevels.h"

#include <QCollator>

#include <algorithm>

void SortNaturally(TreeLevel& level) {
    // The order of no language in particular knows no numbers.
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QCollatorSortKey, TreeEntry>> keyed;
    keyed.reserve(level.entries.size());
    for (TreeEntry& entry : level.entries) {
        QCollatorSortKey key = collator.sortKey(entry.key);
        keyed.emplace_back(std::move(key), std::move(entry));
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    for (std::size_t i = 0; i < keyed.size(); ++i)
        level.entries[i] = std::move(keyed[i].second);
}

QStringList TreeLevels::PathOf(const Node& node) {
    QStringList path;
    for (const Node* above = &node; above->parent; above = above->parent)
        path.prepend(above->entry.key);
    return path;
}

const TreeLevels::Node* TreeLevels::Find(const QStringList& path) const {
    const Node* node = &m_root;
    for (const QString& key : path) {
        const auto below = std::find_if(node->children.begin(), node->children.end(),
                                        [&key](const auto& child) { return child->entry.key == key; });
        if (below == node->children.end())
            return nullptr;
        node = below->get();
    }
    return node;
}

QStringList TreeLevels::KeysBelow(const QStringList& path) const {
    QStringList keys;
    if (const Node* node = Find(path))
        for (const auto& child : node->children)
            if (!child->isMessage)
                keys.append(child->entry.key);
    return keys;
}

std::vector<std::unique_ptr<TreeLevels::Node>> TreeLevels::MakeChildren(Node& node, TreeLevel level) {
    const bool failed = !level.failure.isEmpty();
    node.listing = failed ? Listing::Failed : Listing::Listed;
    if (failed)
        level.entries = {{{}, level.failure, 0, false, false}};
    std::vector<std::unique_ptr<Node>> children;
    children.reserve(level.entries.size());
    for (TreeEntry& entry : level.entries) {
        auto child = std::make_unique<Node>();
        child->entry = std::move(entry);
        child->parent = &node;
        child->row = int(children.size());
        child->isMessage = failed;
        children.push_back(std::move(child));
    }
    return children;
}

const TreeLevels::Node* NextNode(const TreeLevels::Node& node) {
    if (!node.children.empty())
        return node.children.front().get();
    for (const TreeLevels::Node* at = &node; at->parent; at = at->parent)
        if (std::size_t(at->row) + 1 < at->parent->children.size())
            return at->parent->children[std::size_t(at->row) + 1].get();
    return nullptr;
}
