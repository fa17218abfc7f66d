#include "clouddrive/RemoteLevels.h"

#include "look/IconRegistry.h"
#include "service/RequestText.h"

#include <QCollator>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

TreeLevel LevelOf(const DavListing& listing, const RemoteLevels& levels) {
    QStringList names;
    for (const DavEntry& entry : listing.entries)
        if (entry.isFolder)
            names.append(entry.name);
    TreeLevel level;
    for (const std::size_t place : NaturalOrder(names)) {
        const QString& name = names[qsizetype(place)];
        const bool isRoot = levels.homeIsRoot && listing.folderPath.isEmpty() && name == "Home"_L1;
        level.entries.push_back({name, isRoot ? u"/"_s : name, FolderIcon, !levels.oneLevel, false});
    }
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

std::vector<std::size_t> NaturalOrder(const QStringList& names) {
    // The order of no language in particular knows no numbers.
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QCollatorSortKey, std::size_t>> keyed;
    keyed.reserve(std::size_t(names.size()));
    for (const QString& name : names)
        keyed.emplace_back(collator.sortKey(name), keyed.size());
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    std::vector<std::size_t> order;
    order.reserve(keyed.size());
    for (const auto& [key, place] : keyed)
        order.push_back(place);
    return order;
}
