#include "syncplan/LocalFolder.h"

#include "platform/Folders.h"
#include "platform/Shell.h"
#include "zep/Text.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(LocalFolder)
};

constexpr platform::SpecialFolder ShortcutPlaces[] = {
    platform::SpecialFolder::Desktop, platform::SpecialFolder::StartMenu, platform::SpecialFolder::Documents};

constexpr Qt::CaseSensitivity PathCase =
    std::filesystem::path::preferred_separator == '/' ? Qt::CaseSensitive : Qt::CaseInsensitive;

/// With one slash at its end, so that it begins as all that is inside.
QString Comparable(const QString& path) {
    const QString clean = QDir::cleanPath(QDir::fromNativeSeparators(path));
    return clean.endsWith(u'/') ? clean : clean + u'/';
}

/// Does it in each place; a folder that the system does not name has its place in the answer, too.
template <typename Do>
QStringList FailedPlaces(Do doIn) {
    QStringList failed;
    for (const platform::SpecialFolder place : ShortcutPlaces) {
        const std::filesystem::path folder = platform::SpecialFolderPath(place);
        if (folder.empty())
            failed += Words::tr("a folder that the system does not name");
        else if (!doIn(folder))
            failed += FromPath(folder);
    }
    return failed;
}

} // namespace

bool IsAbsoluteFolder(const QString& path) {
    return ToPath(path).is_absolute();
}

QString ProposedFolder(const QString& name) {
    return QDir::toNativeSeparators(QDir::homePath() + u'/' + SyncFolderTitle(name));
}

QString NestingWarning(const QString& path, const std::vector<SyncFolder>& folders) {
    if (!IsAbsoluteFolder(path))
        return {};
    const QString own = Comparable(path);
    for (const SyncFolder& folder : folders) {
        const QString other = Comparable(folder.path);
        if (own.compare(other, PathCase) == 0)
            return Words::tr("This is the folder of the Cloud Sync Folder \"%1\" already.").arg(folder.name);
        if (own.startsWith(other, PathCase))
            return Words::tr(
                       "This folder is inside that of the Cloud Sync Folder \"%1\" (%2): its files will "
                       "travel to both.")
                .arg(folder.name, folder.path);
        if (other.startsWith(own, PathCase))
            return Words::tr("This folder holds that of the Cloud Sync Folder \"%1\" (%2), whose files will "
                             "travel to both.")
                .arg(folder.name, folder.path);
    }
    return {};
}

bool MakeLocalFolder(const QString& path) {
    return platform::MakeFolders(ToPath(path));
}

QStringList PlaceShortcuts(const QString& name, const QString& path) {
    const std::string description =
        Words::tr("Put your files into this Cloud Sync Folder on one computer, and they'll be available on "
                  "any of your other Cloud Sync Folder on other computers.")
            .toStdString();
    return FailedPlaces([&](const std::filesystem::path& place) {
        return platform::MakeShortcut(place, SyncFolderTitle(name).toStdString(), ToPath(path), description);
    });
}

QStringList RemoveShortcuts(const QString& name) {
    return FailedPlaces([&](const std::filesystem::path& place) {
        return platform::RemoveShortcut(place, SyncFolderTitle(name).toStdString());
    });
}

QString OpenLocally(const QString& path) {
    if (path.isEmpty() || !QFileInfo::exists(path))
        return Words::tr("\"%1\" is not there.").arg(path);
    return platform::OpenInShell(path.toStdString()) ? QString()
                                                     : Words::tr("\"%1\" could not be opened.").arg(path);
}

QString LocalFile(const SyncFolder& folder, const QString& file) {
    for (const QString& name : file.split(u'/'))
        if (name == ".."_L1 || name.contains(u'\\'))
            return {};
    return QDir::toNativeSeparators(QDir::cleanPath(folder.path + u'/' + file));
}

QString LocalFileText(const QString& path) {
    const QFileInfo file(path);
    if (path.isEmpty() || !file.isFile())
        return Words::tr("not there");
    return Words::tr("%1 octets, %2")
        .arg(GroupedNumber(file.size()), file.lastModified().toString(u"yyyy-MM-dd HH:mm:ss"_s));
}
