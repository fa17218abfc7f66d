#include "clouddrive/RemoteLevels.h"

#include "look/IconRegistry.h"
#include "service/RequestText.h"

#include <QCollator>
#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(RemoteLevels)
};

/// "Part 2" before "Part 10".
QStringList InNaturalOrder(const QStringList& names) {
    // The order of no language in particular knows no numbers.
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<std::pair<QCollatorSortKey, QString>> keyed;
    keyed.reserve(std::size_t(names.size()));
    for (const QString& name : names)
        keyed.emplace_back(collator.sortKey(name), name);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    QStringList sorted;
    sorted.reserve(names.size());
    for (const auto& [key, name] : keyed)
        sorted.append(name);
    return sorted;
}

TreeLevel LevelOf(const DavListing& listing, const RemoteLevels& levels) {
    QStringList names;
    for (const DavEntry& entry : listing.entries)
        if (entry.isFolder)
            names.append(entry.name);
    TreeLevel level;
    for (const QString& name : InNaturalOrder(names)) {
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

QString ListingFailure(const ServiceAnswer& answer) {
    if (answer.outcome == ServiceOutcome::OtherStatus)
        return Words::tr("The service does not list this folder (status %1).").arg(answer.status);
    if (!answer)
        return Words::tr("The service does not answer.");
    return answer.length ? QString() : Words::tr("The service's answer broke off in the middle.");
}
