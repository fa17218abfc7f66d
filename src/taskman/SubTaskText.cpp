#include "taskman/SubTaskText.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

enum class Condition { None, ChangeLog, SyncMarker };

struct SubTaskType {
    const char* code;
    Condition condition; ///< on the first parameter
    const char* name;
};

// The first that holds wins.
constexpr std::array<SubTaskType, 20> Types{{
    {"PUT", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Upload")},
    {"GET", Condition::ChangeLog, QT_TRANSLATE_NOOP("SubTaskName", "Receive Change Notification")},
    {"GET", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Download")},
    {"DPUT", Condition::ChangeLog, QT_TRANSLATE_NOOP("SubTaskName", "Send Change Notification")},
    {"DPUT", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Upload")},
    {"MKCOL", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Create Directory")},
    {"DELETEFOLDER", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Delete Directory")},
    {"DROPSYNC", Condition::SyncMarker, QT_TRANSLATE_NOOP("SubTaskName", "Re-Sync Cloud Sync Folder")},
    {"DROPSYNC", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Apply File Change")},
    {"DropFolderSyncForce", Condition::None,
     QT_TRANSLATE_NOOP("SubTaskName", "Force Re-Sync Cloud Sync Folder")},
    {"DROPCHANGES", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Process Local File Changes")},
    {"DROPUPLOAD", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Upload Local Changed File")},
    {"ProcessChangeLogs", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Process Change Logs")},
    {"LOCALDEL", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Delete Local File")},
    {"BPUT", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Upload File Snapshot")},
    {"DMKCOL", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Create Directory")},
    {"DIR", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "List Directory")},
    {"CreateDelete", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Enumerate Files to Delete")},
    {"CheckPoint", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Verify All Previous Subtasks")},
    {"RestoreCommit", Condition::None, QT_TRANSLATE_NOOP("SubTaskName", "Commit Restore")},
}};

bool Is(const QString& type, const char* code) {
    return type.compare(QLatin1String(code), Qt::CaseInsensitive) == 0;
}

bool Holds(Condition condition, const QString& parameter) {
    switch (condition) {
    case Condition::ChangeLog:
        return parameter.startsWith("/ChangeLog"_L1);
    case Condition::SyncMarker:
        return parameter.contains("43811DCD-8C5A-4EF9-B903-2EEA9CE88487"_L1);
    case Condition::None:
        break;
    }
    return true;
}

bool IsSeparator(QChar c) {
    return c == u'/' || c == u'\\';
}

/// What follows the folder; the whole path when it does not lie below it.
QString Below(const QString& path, const QString& folder) {
    if (folder.isEmpty() || path.size() <= folder.size() || !path.startsWith(folder))
        return path;
    const bool closed = IsSeparator(folder.back());
    if (!closed && !IsSeparator(path.at(folder.size())))
        return path;
    const QString rest = path.mid(folder.size() + (closed ? 0 : 1));
    return rest.isEmpty() ? path : rest;
}

const char* PrefixOfChange(QChar letter) {
    switch (letter.unicode()) {
    case u'a':
        return QT_TRANSLATE_NOOP("SubTaskName", "New(");
    case u'd':
        return QT_TRANSLATE_NOOP("SubTaskName", "Delete(");
    case u'm':
        return QT_TRANSLATE_NOOP("SubTaskName", "Change(");
    default:
        return nullptr;
    }
}

/// "name.###m" as "Change(name)".
QString ChangeShown(const QString& text) {
    constexpr QLatin1String marker(".###");
    const qsizetype at = text.lastIndexOf(marker);
    const qsizetype letter = at + marker.size();
    const char* prefix = at >= 0 && letter + 1 == text.size() ? PrefixOfChange(text.at(letter)) : nullptr;
    return prefix ? QCoreApplication::translate("SubTaskName", prefix) + text.left(at) + u')' : text;
}

} // namespace

TransferDirection DirectionOfSubTask(const QString& type) {
    for (const char* code : {"PUT", "DPUT", "DROPUPLOAD", "BPUT"}) {
        if (Is(type, code))
            return TransferDirection::Upload;
    }
    return Is(type, "GET") ? TransferDirection::Download : TransferDirection::None;
}

QString SubTaskName(const QString& type, const QString& parameter) {
    const auto found = std::find_if(Types.begin(), Types.end(), [&](const SubTaskType& each) {
        return Is(type, each.code) && Holds(each.condition, parameter);
    });
    return found == Types.end() ? type : QCoreApplication::translate("SubTaskName", found->name);
}

QString ShownParameter(const QString& parameter, const QStringList& bases) {
    for (const QString& base : bases) {
        const QString rest = Below(parameter, base);
        if (rest.size() != parameter.size())
            return ChangeShown(rest);
    }
    return ChangeShown(parameter);
}

QStringList SourcesOf(const QString& description) {
    return description.left(description.indexOf(u'\t')).split(u'\n', Qt::SkipEmptyParts);
}
