#pragma once

#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>

/// What is ticked in a tree: marks only where a node differs from its parent, so that it needs no loaded tree
/// and holds for nodes that are listed later, or never. A path is the keys from the root's child down.
class CheckChoice {
public:
    /// The known keys of the level below a path.
    using LevelBelow = std::function<QStringList(const QStringList& path)>;

    struct State {
        bool ticked = false;
        int tickedBelow = 0;   ///< of a node that is not ticked: the highest ticked ones below it
        int leftOut = 0;       ///< of a ticked node: the highest unticked ones below it
        bool inTicked = false; ///< of a node that is not ticked: it was left out of a ticked one above it

        bool isHighest = false; ///< differs from the node above it

        bool IsLeftOut() const { return inTicked && isHighest; }
    };

    /// A node that has marks at it or below it.
    struct Branch {
        Branch* parent = nullptr;
        std::optional<bool> mark;
        int ticked = 0;   ///< marks below it that tick
        int unticked = 0; ///< marks below it that untick
        std::unordered_map<QString, std::unique_ptr<Branch>> below;
    };

    State StateOf(const QStringList& path) const;
    /// The same to all below. Ticking a node below one that was left out ticks the way up to the ticked tree,
    /// and leaves the other known children on that way out. Returns the node below which states may have
    /// changed.
    QStringList Set(const QStringList& path, bool ticked, const LevelBelow& levelBelow);
    bool IsEmpty() const { return m_root.ticked == 0; }
    void Clear() { m_root = {}; }

    const Branch& Root() const { return m_root; }

private:
    Branch& Make(const QStringList& path);
    void Mark(const QStringList& path, bool ticked);
    static void SetMark(Branch& branch, std::optional<bool> mark);
    static void Prune(Branch* branch);

    Branch m_root;
};
