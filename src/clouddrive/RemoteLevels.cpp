#include "clouddrive/RemoteLevels.h"

#include "look/IconRegistry.h"
#include "service/RequestText.h"

using namespace Qt::Literals::StringLiterals;

namespace {

TreeLevel LevelOf(const DavListing& listing, const RemoteLevels& levels) {
    TreeLevel level;
    for (const DavEntry& entry : listing.entries)
        if (entry.isFolder)
            level.entries.push_back({entry.name, entry.name, FolderIcon, !levels.oneLevel, false});
    SortNaturally(level);
    for (TreeEntry& entry : level.entries)
        if (levels.homeIsRoot && listing.folderPath.isEmpty() && entry.key == "Home"_L1)
            entry.name = u"/"_s;
    return level;
}

} // namespace

QString RemoteLevels::PathOf(const QStringList& keys) const {
    QString path = start;
    for (const QString& key : keys)
        path += u'/' + key;
    return path;
}

std::optional<QStringList> RemoteLevels::KeysOf(const QString& path) const {
    QStringList keys = path.split(u'/', Qt::SkipEmptyParts);
    for (const QString& name : start.split(u'/', Qt::SkipEmptyParts)) {
        if (keys.isEmpty() || keys.front().compare(name, Qt::CaseInsensitive) != 0)
            return std::nullopt;
        keys.removeFirst();
    }
    return keys;
}

CheckTreeModel::Lister ListRemoteFolders(const ServiceClient& service, const RemoteLevels& levels) {
    return [service, levels](const QStringList& keys, std::stop_token stop) -> std::optional<TreeLevel> {
        const QString path = levels.PathOf(keys);
        if (const QString refusal = ListedPathRefusal(path); !refusal.isEmpty())
            return TreeLevel{{}, refusal};
        const ServiceAnswer answer = RequestDavListing(service, path, std::move(stop));
        if (const QString failure = ListingFailure(answer); !failure.isEmpty())
            return TreeLevel{{}, failure};
        return LevelOf(ParseMultistatus(answer.body, path, levels.hidden), levels);
    };
}
