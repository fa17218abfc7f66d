#include "wizard/CheckChoice.h"

namespace {

using Branch = CheckChoice::Branch;

void Count(Branch* from, bool ticked, int by) {
    for (Branch* branch = from; branch; branch = branch->parent)
        (ticked ? branch->ticked : branch->unticked) += by;
}

} // namespace

CheckChoice::State CheckChoice::StateOf(const QStringList& path) const {
    const Branch* branch = &m_root;
    State state;
    bool inTicked = false;
    for (const QString& key : path) {
        const auto below = branch->below.find(key);
        branch = below == branch->below.end() ? nullptr : below->second.get();
        if (!branch)
            break;
        if (branch->mark) {
            inTicked = state.ticked;
            state.ticked = *branch->mark;
        }
    }
    state.inTicked = !state.ticked && inTicked;
    if (branch) {
        state.tickedBelow = state.ticked ? 0 : branch->ticked;
        state.leftOut = state.ticked ? branch->unticked : 0;
        state.isHighest = branch->mark.has_value();
    }
    return state;
}

CheckChoice::Branch& CheckChoice::Make(const QStringList& path) {
    Branch* branch = &m_root;
    for (const QString& key : path) {
        std::unique_ptr<Branch>& below = branch->below[key];
        if (!below) {
            below = std::make_unique<Branch>();
            below->parent = branch;
        }
        branch = below.get();
    }
    return *branch;
}

void CheckChoice::SetMark(Branch& branch, std::optional<bool> mark) {
    if (branch.mark)
        Count(branch.parent, *branch.mark, -1);
    branch.mark = mark;
    if (mark)
        Count(branch.parent, *mark, +1);
}

void CheckChoice::Prune(Branch* branch) {
    while (branch->parent && !branch->mark && branch->below.empty()) {
        Branch* parent = branch->parent;
        std::erase_if(parent->below, [branch](const auto& below) { return below.second.get() == branch; });
        branch = parent;
    }
}

void CheckChoice::Mark(const QStringList& path, bool ticked) {
    Branch& branch = Make(path);
    Count(branch.parent, true, -branch.ticked);
    Count(branch.parent, false, -branch.unticked);
    branch.ticked = 0;
    branch.unticked = 0;
    branch.below.clear();
    SetMark(branch, {});
    if (StateOf(path).ticked != ticked)
        SetMark(branch, ticked);
    Prune(&branch);
}

QStringList CheckChoice::Set(const QStringList& path, bool ticked, const LevelBelow& levelBelow) {
    if (path.isEmpty())
        return path;
    const State before = StateOf(path);
    if (!ticked || !before.inTicked) {
        Mark(path, ticked);
        return path;
    }
    // Down the way from the one that was left out: it is ticked, and what branches off the way is not.
    QStringList way = path.first(1);
    while (!StateOf(way).inTicked)
        way.append(path.at(way.size()));
    QStringList changed = way;
    Mark(way, true);
    while (way.size() < path.size()) {
        const QString& next = path.at(way.size());
        for (const QString& key : levelBelow(way))
            if (key != next)
                Mark(way + QStringList(key), false);
        way.append(next);
    }
    return changed;
}
