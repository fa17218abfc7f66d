#pragma once

#include "wizard/CheckChoice.h"
#include "wizard/TreeLevels.h"

struct WalkedNode {
    QStringList path;
    const TreeLevels::Node* node = nullptr; ///< none: chosen once, and no level shows it
};

/// What a choice selects and leaves out: what is ticked is exactly what is at or below a selected node and
/// not at or below an excluded one.
struct TreeWalk {
    std::vector<WalkedNode> selected; ///< the highest ticked nodes
    std::vector<WalkedNode> excluded; ///< the highest unticked ones on each branch below those
};

/// In the order of the tree; what no level shows comes after what its parent's level shows, by its keys.
TreeWalk WalkTree(const CheckChoice& choice, const TreeLevels& levels);
