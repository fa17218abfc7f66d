#pragma once

#include "plan/BackupSchedule.h"
#include "plan/BackupTask.h"

#include <QByteArray>

#include <array>

// What the wizards, the settings of a backup and the shell make up, and the records that the service takes of
// it.

/// The form of the wizards' page that asks when to back up.
ScheduleForm ScheduleFormOf(BackupFlavour flavour);

/// Which files of the sources are taken. An empty text leaves nothing out, or in: "*" is sent for it.
struct BackupFilter {
    QString types = {}; ///< extensions, as in ".txt, .html"; empty: all files
    QString excludedTypes = QStringLiteral(".tmp");
    QString excludedFiles = QStringLiteral("thumbs.db;desktop.ini;picasa.ini;");
    bool skipSystem = true;
    bool skipHidden = true;

    bool operator==(const BackupFilter&) const = default;
};

/// The filter in the five lines that the service keeps.
QString FilterLines(const BackupFilter& filter);
/// The filter of a backup by file type.
BackupFilter FilterOfTypes(const QString& types);

/// How many snapshots there are to be.
struct BackupRetention {
    int fullEvery = 10; ///< a full one every so many backups
    int keep = 0;       ///< the last ones that are kept; 0: all

    bool operator==(const BackupRetention&) const = default;
};

/// A backup of folders or of file types. Paths stand as they were chosen.
struct BackupDraft {
    QString name; ///< without the mark of an encrypted one
    BackupFlavour flavour = BackupFlavour::Mirrored;
    QStringList sources; ///< "@" alone: the chosen file types of the whole machine
    QString target;
    QStringList exclusions;
    BackupFilter filter;
    BackupSchedule schedule; ///< date and time must be known
    BackupRetention retention;
    bool encrypted = false;

    bool operator==(const BackupDraft&) const = default;
};

/// A backup of applications, by the keys of what is taken and left out.
struct ApplicationDraft {
    QString name;
    QStringList keys;
    QString target;
    QStringList exclusions;
    BackupSchedule schedule;
    BackupRetention retention;
    bool encrypted = false;

    bool operator==(const ApplicationDraft&) const = default;
};

/// The name by which the service lists a backup: tabs and line feeds are blanks in it, and the mark of an
/// encrypted one stands behind it.
QString ListedName(const QString& name, bool encrypted);

/// The fields of a record in its order.
enum class BackupField {
    Name,
    Sources,
    Target,
    Exclusions,
    Filter,
    Schedule,
    FullEvery,
    Keep,
    Encryption,
    Type
};
std::array<QString, 10> FieldsOf(const BackupDraft& draft);
enum class ApplicationField { Name, Keys, Target, Exclusions, FullEvery, Keep, Schedule, Encryption };
std::array<QString, 8> FieldsOf(const ApplicationDraft& draft);

/// The records, in UTF-8, as "/schedule/backupex" and "/schedule/advbackup" take them.
QByteArray RecordOf(const std::array<QString, 10>& fields);
QByteArray RecordOf(const std::array<QString, 8>& fields);
