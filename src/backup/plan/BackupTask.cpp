#include "plan/BackupTask.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool IsType(const QString& type, QLatin1String wanted) {
    return type.compare(wanted, Qt::CaseInsensitive) == 0;
}

struct KindMeaning {
    QLatin1String type;   ///< empty: any
    QLatin1String begins; ///< the description
    BackupKind kind;
    const char* text;
};

// The first that holds wins.
constexpr KindMeaning Kinds[] = {
    {"ccbackup"_L1, {}, BackupKind::CrossCloud, QT_TRANSLATE_NOOP("BackupTask", "Cross Cloud")},
    {"advbackup"_L1, {}, BackupKind::Application, QT_TRANSLATE_NOOP("BackupTask", "Application Data")},
    {"snapshotbackup"_L1, "@"_L1, BackupKind::FileType, QT_TRANSLATE_NOOP("BackupTask", "File Type")},
    {"snapshotbackup"_L1, {}, BackupKind::Folder, QT_TRANSLATE_NOOP("BackupTask", "Folder")},
    {{}, {}, BackupKind::Mirrored, QT_TRANSLATE_NOOP("BackupTask", "Mirrored")},
};

QStringList LinesOf(const QString& text) {
    return text.split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

std::optional<BackupFlavour> ListedFlavour(const TaskRecord& task) {
    const bool application = IsType(task.kind, "advbackup"_L1);
    const bool backup =
        task.schedule.type == ScheduleBlob::BackupType || IsType(task.kind, "ccbackup"_L1) || application;
    if (task.state == TaskState::Completed || !backup)
        return {};
    const bool snapshot = application || IsType(task.kind, "snapshotbackup"_L1);
    return snapshot ? BackupFlavour::Snapshot : BackupFlavour::Mirrored;
}

BackupKind KindOfBackup(const QString& type, const QString& description) {
    const auto holds = [&](const KindMeaning& entry) {
        return (entry.type.isEmpty() || IsType(type, entry.type)) && description.startsWith(entry.begins);
    };
    return std::find_if(std::begin(Kinds), std::end(Kinds), holds)->kind;
}

QString BackupKindText(BackupKind kind) {
    return QCoreApplication::translate("BackupTask", Kinds[static_cast<std::size_t>(kind)].text);
}

BackupDescription DescriptionOf(BackupKind kind, const QString& description) {
    if (kind == BackupKind::CrossCloud)
        return {};
    return {LinesOf(description.section(u'\t', 0, 0)), LinesOf(description.section(u'\t', 1, 1)),
            LinesOf(description.section(u'\t', 2))};
}
