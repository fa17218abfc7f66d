#pragma once

#include <QString>

/// What kind of task the service's type string and the task's name make it.
struct TaskClass {
    bool system = false; ///< one of the service's own
    bool backup = false;
};

/// `backupFlag` is the row's own mark of a backup task.
TaskClass ClassifyTask(const QString& type, const QString& name, bool backupFlag = false);

/// The name of a task's type, as shown; the type string itself when it has none.
QString TaskTypeName(const QString& type);

/// What a card calls it: the type's name, or what the task's name says where the type has none.
QString TaskKindText(const QString& type, const QString& name);
