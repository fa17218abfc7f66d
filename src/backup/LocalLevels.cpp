#include "backup/LocalLevels.h"

#include "look/Formatters.h"
#include "look/IconRegistry.h"
#include "platform/AwaitOrLeave.h"
#include "zep/Text.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace fs = std::filesystem;
using platform::EntryKind;
using platform::FolderOutcome;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(LocalLevels)
};

/// How long a single link, or a folder of the user, may take to say what it is.
constexpr std::chrono::milliseconds Glance{500};

platform::Deadline In(std::chrono::milliseconds time) {
    return std::chrono::steady_clock::now() + time;
}

QString FailureText(FolderOutcome outcome) {
    switch (outcome) {
    case FolderOutcome::Whole:
    case FolderOutcome::Left:
        return {};
    case FolderOutcome::Missing:
        return Words::tr("This folder is not there any more");
    case FolderOutcome::NoFolder:
        return Words::tr("This is no folder any more");
    case FolderOutcome::Denied:
        return Words::tr("No right to list this folder");
    case FolderOutcome::Unready:
        return Words::tr("The drive is not ready, or its server does not answer");
    case FolderOutcome::TooLong:
        return Words::tr("The path is too long for this computer");
    case FolderOutcome::Broken:
        break;
    }
    return Words::tr("This folder could not be read");
}

/// Why no record can carry the name, whose text is lossy unless it is the whole name.
QString UncarriedText(const QString& text, bool isWhole) {
    if (!isWhole)
        return Words::tr("the name is no valid text: taken only with the folder above");
    if (text.contains(u'\n'))
        return Words::tr("the name holds a line feed: taken only with the folder above");
    if (text.contains(u'\t'))
        return Words::tr("the name holds a tab: taken only with the folder above");
    return {};
}

/// The octets of a name that has no text, so that two such names stay two.
QString KeyOfOctets(const fs::path& name) {
    const auto& native = name.native();
    const QByteArray octets(reinterpret_cast<const char*>(native.data()),
                            qsizetype(native.size() * sizeof(native[0])));
    return u'/' + QString::fromLatin1(octets.toHex());
}

TreeEntry EntryOf(const fs::path& name) {
    const QString text = FromPath(name);
    const bool isWhole = ToPath(text) == name;
    const QString why = UncarriedText(text, isWhole);
    const bool isCarried = why.isEmpty();
    return {isWhole ? text : KeyOfOctets(name), Isolated(text), FolderIcon, isCarried, isCarried, why};
}

bool IsAtOrAbove(const fs::path& above, const fs::path& path) {
    return std::mismatch(above.begin(), above.end(), path.begin(), path.end()).first == above.end();
}

/// Where a link leads: nowhere when that is no folder.
struct LinkTarget {
    bool isFolder = false;
    fs::path path;
};

LinkTarget TargetOf(const fs::path& link) {
    if (platform::ProbeFolder(link) != FolderOutcome::Whole)
        return {};
    return {true, platform::RealPath(link)};
}

/// Whether one comes back by the link to a folder that one has gone through.
bool IsLoop(const fs::path& folder, const fs::path& target) {
    const auto leadsBackTo = [&target](const fs::path& way) {
        const fs::path real = platform::RealPath(way);
        return real.empty() || IsAtOrAbove(target, real);
    };
    fs::path way = folder.root_path();
    bool loops = leadsBackTo(way);
    for (const fs::path& part : folder.relative_path()) {
        way /= part;
        loops = loops || leadsBackTo(way);
    }
    return loops;
}

/// What is shown of a link in the folder; nothing of one that leads to no folder.
std::optional<TreeEntry> LinkEntry(const fs::path& folder, const fs::path& name,
                                   const std::stop_token& stop) {
    TreeEntry entry = EntryOf(name);
    const auto asked = platform::AwaitOrLeave(
        [folder, name] {
            const LinkTarget target = TargetOf(folder / name);
            return std::pair(target, target.isFolder && IsLoop(folder, target.path));
        },
        stop, In(Glance));
    QStringList notes{entry.note};
    if (!asked) {
        entry.canOpen = false;
        notes.append(Words::tr("link to what does not answer"));
    } else if (!asked->first.isFolder) {
        return {};
    } else {
        notes.append(Words::tr("link to %1").arg(Isolated(FromPath(asked->first.path))));
        if (asked->second) {
            entry.canOpen = false;
            notes.append(Words::tr("leads back to where it stands"));
        }
    }
    notes.removeAll({});
    entry.note = notes.join(u" \u00B7 "_s);
    return entry;
}

/// What a folder was found to hold, the files left out.
struct Found {
    FolderOutcome outcome = FolderOutcome::Broken;
    std::vector<fs::path> folders;
    std::vector<fs::path> links;
};

Found Read(const LocalFolders& folders, const fs::path& folder, const std::stop_token& stop) {
    Found found;
    found.outcome =
        folders.read(folder, platform::FolderDetail::Names, [&](const platform::FolderEntry& entry) {
            if (entry.kind == EntryKind::Folder)
                found.folders.emplace_back(entry.name);
            else if (entry.kind == EntryKind::Link)
                found.links.emplace_back(entry.name);
            return !stop.stop_requested();
        });
    return found;
}

TreeLevel LevelBelow(const fs::path& folder, const LocalFolders& folders, const std::stop_token& stop) {
    const auto found = platform::AwaitOrLeave([folders, folder, stop] { return Read(folders, folder, stop); },
                                              stop, In(folders.patience));
    if (!found)
        return {{}, Words::tr("The drive does not answer")};
    if (const QString failure = FailureText(found->outcome); !failure.isEmpty())
        return {{}, failure};
    TreeLevel level;
    level.entries.reserve(found->folders.size());
    for (const fs::path& name : found->folders)
        level.entries.push_back(EntryOf(name));
    for (const fs::path& name : found->links) {
        if (stop.stop_requested())
            break;
        if (auto entry = LinkEntry(folder, name, stop))
            level.entries.push_back(std::move(*entry));
    }
    SortNaturally(level);
    return level;
}

QString FolderName(platform::SpecialFolder folder) {
    switch (folder) {
    case platform::SpecialFolder::Home:
        return Words::tr("Home");
    case platform::SpecialFolder::Desktop:
        return Words::tr("Desktop");
    case platform::SpecialFolder::Documents:
        return Words::tr("Documents");
    case platform::SpecialFolder::Downloads:
        return Words::tr("Downloads");
    case platform::SpecialFolder::Music:
        return Words::tr("Music");
    case platform::SpecialFolder::Pictures:
        return Words::tr("Pictures");
    default:
        return Words::tr("Videos");
    }
}

/// What is shown of a first level's folder, whose key is its path.
TreeEntry PlaceEntry(const fs::path& path, const QString& name, int icon) {
    TreeEntry entry = EntryOf(path);
    entry.name = name;
    entry.icon = icon;
    return entry;
}

QString VolumeName(const platform::Volume& volume) {
    QString name = FromPath(volume.path);
    if (name.size() > 1 && name.endsWith(QDir::separator()))
        name.chop(1);
    return volume.isRemote
               ? Words::tr("Network Drive (%1) - Change may not be backed up in real time").arg(name)
               : Words::tr("Local Disk (%1)").arg(name);
}

TreeLevel FirstLevel(const LocalFolders& folders, const std::stop_token& stop) {
    using enum platform::SpecialFolder;
    TreeLevel level;
    std::vector<fs::path> shown;
    for (const auto folder : {Home, Desktop, Documents, Downloads, Music, Pictures, Videos}) {
        const fs::path path = platform::SpecialFolderPath(folder);
        // Where the system keeps none of a kind it names the home folder.
        if (!path.is_absolute() || std::find(shown.begin(), shown.end(), path) != shown.end())
            continue;
        const auto outcome =
            platform::AwaitOrLeave([path] { return platform::ProbeFolder(path); }, stop, In(Glance));
        if (outcome == FolderOutcome::Missing)
            continue;
        shown.push_back(path);
        level.entries.push_back(PlaceEntry(path, FolderName(folder), FolderIcon));
    }
    for (const platform::Volume& volume : folders.volumes())
        if (std::find(shown.begin(), shown.end(), volume.path) == shown.end())
            level.entries.push_back(PlaceEntry(volume.path, VolumeName(volume), TargetIcon));
    return level;
}

} // namespace

QString LocalPath(const QStringList& keys) {
    QString path = keys.value(0);
    for (qsizetype i = 1; i < keys.size(); ++i) {
        if (!path.endsWith(QDir::separator()))
            path += QDir::separator();
        path += keys[i];
    }
    return path;
}

CheckTreeModel::Lister ListLocalFolders(const LocalFolders& folders) {
    return [folders](const QStringList& keys, const std::stop_token& stop) -> std::optional<TreeLevel> {
        return keys.isEmpty() ? FirstLevel(folders, stop)
                              : LevelBelow(ToPath(LocalPath(keys)), folders, stop);
    };
}

FolderSelection SelectionOf(const TreeWalk& walk) {
    std::vector<ChosenFolder> chosen;
    chosen.reserve(walk.selected.size());
    for (const WalkedNode& selected : walk.selected) {
        ChosenFolder& folder = chosen.emplace_back(ChosenFolder{LocalPath(selected.path), {}});
        for (const WalkedNode& excluded : walk.excluded)
            if (excluded.path.first(std::min(excluded.path.size(), selected.path.size())) == selected.path)
                folder.exclusions.append(LocalPath(excluded.path));
    }
    return SelectionOf(chosen);
}

QString FindGone(const QStringList& folders, const std::stop_token& stop) {
    for (const QString& folder : folders) {
        const auto outcome = platform::AwaitOrLeave(
            [path = ToPath(folder)] { return platform::ProbeFolder(path); }, stop, In(Glance));
        if (outcome == FolderOutcome::Missing || outcome == FolderOutcome::NoFolder)
            return folder;
    }
    return {};
}
