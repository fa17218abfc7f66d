#include "backup/SnapshotLevels.h"

#include "look/IconRegistry.h"
#include "plan/DraftRefusal.h"
#include "plan/Writers.h"
#include "service/RequestText.h"

#include <algorithm>
#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int DepthOfWriters = 1;
constexpr int DepthOfComponents = 2; ///< below them there is nothing that can be told to a writer

/// The levels that one snapshot has been asked for.
struct Asked {
    std::mutex mutex;
    QSet<QString> paths;

    bool IsFirst(const QString& path) {
        const std::lock_guard lock(mutex);
        const bool first = !paths.contains(path);
        paths.insert(path);
        return first;
    }
};

/// How the key of a writer, "NAME(IDENTIFIER)", is shown.
QString WriterOfKey(const QString& key) {
    return WriterDisplayName(key.left(key.lastIndexOf(u'(')));
}

/// Whether a record can name it.
bool CanBeRestored(const QString& name) {
    return !name.contains(u'/') && LostInRecord(name).isEmpty();
}

void Append(TreeLevel& level, const DavListing& listing, bool folders, SetType type, qsizetype depth) {
    QSet<QString> seen;
    const bool application = type == SetType::Application;
    TreeLevel part;
    for (const DavEntry& entry : listing.entries) {
        if (entry.isFolder != folders || seen.contains(entry.name))
            continue;
        seen.insert(entry.name);
        const bool plain = CanBeRestored(entry.name);
        const bool opens = folders && plain && !(application && depth >= DepthOfComponents);
        part.entries.push_back({entry.name,
                                application && depth == DepthOfWriters ? WriterOfKey(entry.name) : entry.name,
                                folders ? FolderIcon : 0, opens, plain});
    }
    SortNaturally(part);
    std::move(part.entries.begin(), part.entries.end(), std::back_inserter(level.entries));
}

} // namespace

std::optional<TreeLevel> KnownLevels::Find(const QString& path) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_levels.constFind(path);
    return found == m_levels.constEnd() ? std::nullopt : std::optional(*found);
}

void KnownLevels::Keep(const QString& path, const TreeLevel& level) {
    const std::lock_guard lock(m_mutex);
    m_levels.insert(path, level);
}

CheckTreeModel::Lister ListSnapshot(const ServiceClient& service, const QString& snapshot, SetType type,
                                    std::shared_ptr<KnownLevels> known) {
    return [service, snapshot, type, known = std::move(known),
            asked = std::make_shared<Asked>()](const QStringList& keys, const std::stop_token& stop) {
        QString path = snapshot;
        for (const QString& key : keys)
            path += u'/' + key;
        auto level = asked->IsFirst(path) ? known->Find(path) : std::nullopt;
        if (level)
            return level;
        if (const QString refusal = ListedPathRefusal(path); !refusal.isEmpty())
            return std::optional(TreeLevel{{}, refusal});
        const ServiceAnswer answer = RequestDavListing(service, path, stop);
        if (const QString failure = ListingFailure(answer); !failure.isEmpty())
            return std::optional(TreeLevel{{}, failure});
        const DavListing listing = ParseMultistatus(answer.body, path, HiddenEntries::Show);
        level = TreeLevel();
        for (const bool folders : {true, false})
            Append(*level, listing, folders, type, keys.size() + 1);
        known->Keep(path, *level);
        return level;
    };
}
