#include "wizard/TreeWalk.h"

#include <algorithm>

namespace {

using Branch = CheckChoice::Branch;
using Node = TreeLevels::Node;

class Walker {
public:
    TreeWalk walk;

    void Below(const Branch& branch, const Node* node) {
        if (branch.below.empty())
            return;
        std::size_t met = 0;
        for (const auto& child : node ? node->children : NoChildren) {
            const auto below = branch.below.find(child->entry.key);
            if (below == branch.below.end())
                continue;
            At(child->entry.key, *below->second, child.get());
            ++met;
        }
        if (met < branch.below.size())
            Unshown(branch, node);
    }

private:
    void Unshown(const Branch& branch, const Node* node) {
        std::vector<std::pair<QString, const Branch*>> unshown;
        for (const auto& [key, below] : branch.below)
            unshown.emplace_back(key, below.get());
        if (node)
            for (const auto& child : node->children)
                std::erase_if(unshown, [&](const auto& one) { return one.first == child->entry.key; });
        std::sort(unshown.begin(), unshown.end());
        for (const auto& [key, below] : unshown)
            At(key, *below, nullptr);
    }

    void At(const QString& key, const Branch& branch, const Node* node) {
        m_path.append(key);
        if (branch.mark)
            (*branch.mark ? walk.selected : walk.excluded).push_back({m_path, node});
        Below(branch, node);
        m_path.removeLast();
    }

    static inline const std::vector<std::unique_ptr<Node>> NoChildren;
    QStringList m_path;
};

} // namespace

TreeWalk WalkTree(const CheckChoice& choice, const TreeLevels& levels) {
    Walker walker;
    walker.Below(choice.Root(), &levels.Root());
    return std::move(walker.walk);
}
