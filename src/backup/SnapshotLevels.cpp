#include "backup/SnapshotLevels.h"

#include "clouddrive/RemoteLevels.h"
#include "look/IconRegistry.h"
#include "service/RequestText.h"

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

/// Whether a record can name it.
bool CanBeRestored(const QString& name) {
    return !name.contains(u'/') && !name.contains(u'\t') && !name.contains(u'\n');
}

void Append(TreeLevel& level, const DavListing& listing, bool folders, SetType type, qsizetype depth) {
    QStringList names;
    QSet<QString> seen;
    for (const DavEntry& entry : listing.entries) {
        if (entry.isFolder != folders || seen.contains(entry.name))
            continue;
        seen.insert(entry.name);
        names.append(entry.name);
    }
    const bool application = type == SetType::Application;
    for (const std::size_t place : NaturalOrder(names)) {
        const QString& name = names[qsizetype(place)];
        const bool plain = CanBeRestored(name);
        const bool opens = folders && plain && !(application && depth >= DepthOfComponents);
        level.entries.push_back({name, application && depth == DepthOfWriters ? WriterOfKey(name) : name,
                                 folders ? FolderIcon : 0, opens, plain});
    }
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
