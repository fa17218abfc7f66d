#pragma once

#include "stores/SchedulerStore.h"
#include "support/ServiceFixture.h"

#include <QDir>
#include <QFile>

#include <map>

inline const char* const TaskId = "{00000000-0000-4000-8000-000000000001}";
inline const QString TaskIdText = QString::fromLatin1(TaskId);

/// Few and short attempts, for a database that stays locked.
inline constexpr OpenRule Impatient{2, std::chrono::milliseconds(1)};
/// For one that is unlocked while the test runs.
inline constexpr OpenRule Patient{20'000, std::chrono::milliseconds(1)};

/// The texts that the console has traced in this home, of all levels or of one.
inline QStringList Traces(const QString& home, const QByteArray& level = {}) {
    constexpr qsizetype LevelWidth = 8;
    QFile log(home + QStringLiteral("/logging/BTaskMMC.log"));
    QStringList texts;
    if (log.open(QIODevice::ReadOnly))
        for (const QByteArray& line : log.readAll().split('\n'))
            if (line.contains("] " + level))
                texts += QString::fromUtf8(line.mid(line.indexOf("] ") + 2 + LevelWidth));
    return texts;
}

/// Every file beside this one with its octets, but those of shared memory, which hold the locks of readers.
inline std::map<QString, QByteArray> Octets(const std::filesystem::path& file) {
    std::map<QString, QByteArray> octets;
    const QDir folder(QString::fromStdU16String(file.parent_path().u16string()));
    for (const QString& name : folder.entryList(QDir::Files)) {
        QFile each(folder.filePath(name));
        if (!name.endsWith(QLatin1String("-shm")) && !name.endsWith(QLatin1String(".log")) &&
            each.open(QIODevice::ReadOnly))
            octets[name] = each.readAll();
    }
    return octets;
}

/// The names of all tasks as a walk gives them, and how it went.
struct TaskNames {
    QStringList names;
    ReadResult read;

    static TaskNames Read(std::stop_token stop = {}, const OpenRule& rule = Impatient) {
        TaskNames result;
        result.read = EnumAllTasks(
            [&result](const TaskRecord& task) {
                result.names += task.name;
                return true;
            },
            std::move(stop), rule);
        return result;
    }
};
