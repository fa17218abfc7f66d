#include "syncplan/SyncFolders.h"

#include "service/RequestText.h"
#include "syncplan/LocalFolder.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

using ValueType = ServiceClient::ValueType;

constexpr int Ok = 200;

struct Words {
    Q_DECLARE_TR_FUNCTIONS(SyncFolders)
};

struct SettingValueOf {
    TextSetting setting;
    QString value;
};

TextSetting Number(const QString& name) {
    return {name, ValueType::Integer, {}};
}

TextSetting Text(const QString& name) {
    return {name, ValueType::String, {}};
}

bool IsRecordOf(const QString& entry, const QString& name) {
    return entry.contains(u'\t') && IsNamed(entry, name);
}

/// Tries each, and names those that were not taken.
void WriteEach(const ServiceClient& service, const std::vector<SettingValueOf>& values,
               const std::stop_token& stop, QStringList& notDone) {
    QStringList missing;
    for (const auto& [setting, value] : values)
        if (!WriteSetting(service, setting, value, stop))
            missing += setting.name;
    if (!missing.isEmpty())
        notDone += Words::tr("The service did not take these settings of the folder: %1.")
                       .arg(missing.join(u", "_s));
}

ServiceAnswer RequestFor(const ServiceClient& service, const QString& path, const QString& name,
                         std::stop_token stop) {
    return service.SendRequest(path, u"GET"_s, Ok, name.toUtf8(), std::move(stop));
}

/// Deletes the sync task where there is one.
QString DeleteSyncTask(const ServiceClient& service, const QString& name, const std::stop_token& stop) {
    const ServiceAnswer task = RequestSyncTask(service, name, stop);
    if (SettingStateOf(task) == SettingState::NotRead)
        return Words::tr("The service did not tell the folder's sync task, so none was deleted.");
    const QString id = task ? SettingText(task.body) : QString();
    if (id.isEmpty() || (QueryRefusal(id).isEmpty() && service.DeleteTask(id, stop)))
        return {};
    return Words::tr("The folder's sync task %1 was not deleted.").arg(id);
}

} // namespace

std::vector<SyncFolder> SyncFoldersOf(const QStringList& entries) {
    std::vector<SyncFolder> folders;
    folders.reserve(std::size_t(entries.size()));
    QHash<QString, std::size_t> places;
    for (const QString& entry : entries) {
        const qsizetype tab = entry.indexOf(u'\t');
        if (tab < 0)
            continue;
        const QString name = entry.left(tab);
        const auto [place, isNew] = [&] {
            const auto known = places.constFind(name.toCaseFolded());
            return known == places.cend() ? std::pair(folders.size(), true) : std::pair(*known, false);
        }();
        if (isNew) {
            places.insert(name.toCaseFolded(), place);
            folders.push_back({name, {}});
        }
        folders[place].path = entry.mid(tab + 1);
    }
    return folders;
}

const SyncFolder* FindSyncFolder(const std::vector<SyncFolder>& folders, const QString& name) {
    const auto found = std::find_if(folders.begin(), folders.end(), [&name](const SyncFolder& folder) {
        return folder.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == folders.end() ? nullptr : &*found;
}

QString SyncFolderTitle(const QString& name) {
    return Words::tr("Cloud Sync Folder - ") + name;
}

QString SyncNameRefusal(const QString& name) {
    const QString refusal = QueryRefusal(name);
    return refusal.isEmpty() ? ListedPathRefusal(name) : refusal;
}

QString SyncFolderRefusal(const SyncFolder& folder) {
    if (QString refusal = SyncNameRefusal(folder.name); !refusal.isEmpty())
        return refusal;
    if (!IsAbsoluteFolder(folder.path))
        return Words::tr("\"%1\" is no complete path of a folder.").arg(folder.path);
    const QString refusal = EntryRefusal(DropFolders, folder.name + u'\t' + folder.path);
    return refusal.isEmpty() ? QString()
                             : Words::tr("The folder \"%1\" cannot be used. %2").arg(folder.path, refusal);
}

QString SyncFolderChange::Report() const {
    if (IsWhole())
        return {};
    QStringList lines;
    if (!list.stored)
        lines += list.failure;
    lines += stands + notDone;
    return lines.join(u'\n');
}

SyncFolderChange EnableSyncFolder(const ServiceClient& service, const SyncFolder& folder,
                                  std::stop_token stop) {
    SyncFolderChange change;
    if (const QString refusal = SyncFolderRefusal(folder); !refusal.isEmpty()) {
        change.list.failure = refusal;
        return change;
    }
    const auto add = [&folder](QStringList& entries) {
        if (std::any_of(entries.begin(), entries.end(),
                        [&folder](const QString& entry) { return IsRecordOf(entry, folder.name); }))
            return Words::tr("Only one Cloud Sync Folder is allowed for one virtual directory(cloud storage "
                             "account)");
        entries += folder.name + u'\t' + folder.path;
        return QString();
    };
    const auto makeFolder = [&folder, &change] {
        if (!MakeLocalFolder(folder.path))
            return Words::tr("The folder \"%1\" could not be made, so nothing was changed.").arg(folder.path);
        change.stands = {Words::tr("The local folder \"%1\" is there.").arg(folder.path)};
        return QString();
    };
    change.list = ChangeList(service, DropFolders, add, stop, makeFolder);
    if (!change.list.stored)
        return change;
    change.stands = {Words::tr("The folder \"%1\" is in the list of sync folders.").arg(folder.path)};
    WriteEach(service,
              {{Number(u"LTN_"_s + folder.name), u"0"_s},
               {Text(u"LTN_"_s + folder.name + u'_'), u"{delgroup}"_s},
               {Text(u"LST_"_s + folder.name), {}}},
              stop, change.notDone);
    if (const QStringList missing = PlaceShortcuts(folder.name, folder.path); !missing.isEmpty())
        change.notDone += Words::tr("No shortcut could be placed in %1.").arg(missing.join(u", "_s));
    return change;
}

SyncFolderChange DisableSyncFolder(const ServiceClient& service, const QString& name, std::stop_token stop) {
    SyncFolderChange change;
    QString kept = name; // as the list writes it
    const auto remove = [&name, &kept](QStringList& entries) {
        const std::vector<SyncFolder> folders = SyncFoldersOf(entries);
        const SyncFolder* folder = FindSyncFolder(folders, name);
        if (!folder)
            return Words::tr("There is no Cloud Sync Folder \"%1\".").arg(name);
        kept = folder->name;
        entries.removeIf([&name](const QString& entry) { return IsRecordOf(entry, name); });
        return QString();
    };
    change.list = ChangeList(service, DropFolders, remove, stop);
    if (!change.list.stored)
        return change;
    change.stands = {Words::tr("\"%1\" is no longer in the list of sync folders.").arg(kept)};
    if (const QString failure = DeleteSyncTask(service, kept, stop); !failure.isEmpty())
        change.notDone += failure;
    if (const QStringList places = RemoveShortcuts(kept); !places.isEmpty())
        change.notDone += Words::tr("The shortcut could not be removed from %1.").arg(places.join(u", "_s));
    WriteEach(service, {{Number(u"LTN_"_s + kept), u"0"_s}, {Text(u"LTS_"_s + kept), {}}}, stop,
              change.notDone);
    return change;
}

QString DisableFacts(const SyncFolder& folder) {
    return QStringList{Words::tr("Local files stay in %1").arg(folder.path),
                       Words::tr("Cloud files stay in %1").arg(u'/' + folder.name),
                       Words::tr("Changes no longer travel between the two")}
        .join(u'\n');
}

ServiceAnswer RequestSyncTask(const ServiceClient& service, const QString& name, std::stop_token stop) {
    return RequestFor(service, u"/schedule/getsynctask"_s, name, std::move(stop));
}

ServiceAnswer RequestSync(const ServiceClient& service, const QString& name, std::stop_token stop) {
    return RequestFor(service, u"/schedule/dropfoldersync"_s, name, std::move(stop));
}

QString SyncRequestText(bool done) {
    return done ? Words::tr("Sync task has been scheduled, please check task manager for status")
                : Words::tr("Failed to schedule sync task");
}

ServiceAnswer RequestFullSync(const ServiceClient& service, const QString& name, std::stop_token stop) {
    ServiceAnswer written = WriteSetting(service, Text(u"LST_"_s + name), {}, stop);
    return written ? RequestSync(service, name, std::move(stop)) : written;
}
