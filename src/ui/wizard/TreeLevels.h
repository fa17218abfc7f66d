#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// One node as a level names it.
struct TreeEntry {
    QString key;  ///< unlike all others of its level
    QString name; ///< shown
    int icon = 0; ///< see IconRegistry
    bool canOpen = true;
    bool canTick = true;
    QString note = {}; ///< shown behind the name
};

/// A level as it was listed, in the order in which it is shown.
struct TreeLevel {
    std::vector<TreeEntry> entries = {};
    QString failure = {}; ///< why it could not be listed
};

/// Puts the entries into the natural order of their keys: "Part 2" before "Part 10".
void SortNaturally(TreeLevel& level);

/// What is known of a tree whose levels are listed one by one. UI thread.
class TreeLevels {
public:
    enum class Listing { NotAsked, Asking, Listed, Failed };

    struct Node {
        TreeEntry entry;
        Node* parent = nullptr;
        int row = 0;
        Listing listing = Listing::NotAsked;
        bool isMessage = false; ///< stands in a level that could not be listed, and says why
        std::vector<std::unique_ptr<Node>> children;
    };

    Node& Root() { return m_root; }
    const Node& Root() const { return m_root; }

    /// The keys down to the node; empty for the root.
    static QStringList PathOf(const Node& node);
    /// None where no level shows the path.
    const Node* Find(const QStringList& path) const;
    QStringList KeysBelow(const QStringList& path) const;

    /// The nodes of the level below, or the one that says why there are none, to become the node's children.
    static std::vector<std::unique_ptr<Node>> MakeChildren(Node& node, TreeLevel level);

private:
    Node m_root;
};

/// The next node in the order of a tree whose levels are all open; none after the last.
const TreeLevels::Node* NextNode(const TreeLevels::Node& node);
