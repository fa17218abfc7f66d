#pragma once

#include <QString>
#include <QStringList>

enum class TransferDirection { None, Upload, Download };

/// Which way a sub-task of this type moves a file.
TransferDirection DirectionOfSubTask(const QString& type);

/// What a sub-task does, as shown; the type itself when it has no name. Some names depend on the first
/// parameter.
QString SubTaskName(const QString& type, const QString& parameter);

/// A parameter as shown: without the first of `bases` that it lies below, and a sync change as
/// "Change(name)".
QString ShownParameter(const QString& parameter, const QStringList& bases);

/// The folders that a task's description names as its sources: the lines of its first list.
QStringList SourcesOf(const QString& description);
