#include "taskman/TaskClass.h"

#include <QCoreApplication>

#include <array>

using namespace Qt::Literals::StringLiterals;

namespace {

bool Equal(const QString& text, QLatin1String wanted) {
    return text.compare(wanted, Qt::CaseInsensitive) == 0;
}

enum class Test { Equals, Contains };

struct TypeName {
    Test test;
    const char* text;
    const char* name;
};

// The first that holds wins. The trailing blank of one is part of the text.
constexpr std::array<TypeName, 8> TypeNames{{
    {Test::Equals, "backup", QT_TRANSLATE_NOOP("TaskTypeName", "Mirrored Backup")},
    {Test::Equals, "ccbackup", QT_TRANSLATE_NOOP("TaskTypeName", "Cross Cloud Backup")},
    {Test::Equals, "RestoreApp", QT_TRANSLATE_NOOP("TaskTypeName", "Restore")},
    {Test::Equals, "advbackup", QT_TRANSLATE_NOOP("TaskTypeName", "Application Data Backup")},
    {Test::Contains, "#MESFTASK", QT_TRANSLATE_NOOP("TaskTypeName", "Mesafile System Task")},
    {Test::Contains, "Default Task For",
     QT_TRANSLATE_NOOP("TaskTypeName", "Virtual Directory Default Task ")},
    {Test::Contains, "Cloud Sync Folder Task", QT_TRANSLATE_NOOP("TaskTypeName", "Cloud Sync Folder Task")},
    {Test::Equals, "snapshotbackup", QT_TRANSLATE_NOOP("TaskTypeName", "Snapshot Backup")},
}};

struct NamedKind {
    const char* start; ///< of the names of such tasks
    const char* kind;
};

constexpr std::array<NamedKind, 4> NamedKinds{{
    {"Default Task For", QT_TRANSLATE_NOOP("TaskTypeName", "Virtual Directory Default Task ")},
    {"Cloud Sync Folder Task For", QT_TRANSLATE_NOOP("TaskTypeName", "Cloud Sync Folder Task")},
    {"Drop Folder Sync", QT_TRANSLATE_NOOP("TaskTypeName", "Cloud Sync Folder Task")},
    {"Prefetch Task", QT_TRANSLATE_NOOP("TaskTypeName", "Prefetch Task")},
}};

} // namespace

TaskClass ClassifyTask(const QString& type, const QString& name, bool backupFlag) {
    // Tasks named "Drop Folder Sync ..." sync too, but are the user's, on purpose.
    const bool system = name.contains("Prefetch Task"_L1) || type.contains("#MESFTASK"_L1) ||
                        name.startsWith("Default Task For"_L1, Qt::CaseInsensitive) ||
                        name.startsWith("Cloud Sync Folder Task For"_L1, Qt::CaseInsensitive);
    const bool backup =
        backupFlag || Equal(type, "backup"_L1) || Equal(type, "ccbackup"_L1) || Equal(type, "advbackup"_L1);
    return {system, backup};
}

QString TaskTypeName(const QString& type) {
    for (const TypeName& entry : TypeNames) {
        const QLatin1String text(entry.text);
        if (entry.test == Test::Equals ? Equal(type, text) : type.contains(text))
            return QCoreApplication::translate("TaskTypeName", entry.name);
    }
    return type;
}

QString TaskKindText(const QString& type, const QString& name) {
    const QString known = TaskTypeName(type);
    if (known != type)
        return known.trimmed();
    for (const NamedKind& entry : NamedKinds) {
        if (name.startsWith(QLatin1String(entry.start), Qt::CaseInsensitive))
            return QCoreApplication::translate("TaskTypeName", entry.kind).trimmed();
    }
    return type;
}
