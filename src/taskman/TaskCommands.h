#pragma once

#include "page/CommandRunner.h"
#include "stores/TaskState.h"

/// How a button says what can be done to a task.
QString TaskActionCaption(TaskAction action);
int TaskActionImage(TaskAction action);
/// As in "Not started".
QString TaskNotDone(TaskAction action);

/// Has it done to the task; cancelling one asks before. Its key tells commands to different tasks apart.
CommandOrder TaskOrder(TaskAction action, const QString& taskId, const QString& name);
QString TaskOrderKey(TaskAction action, const QString& taskId);
