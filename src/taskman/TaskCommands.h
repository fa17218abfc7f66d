#pragma once

#include "page/CommandRunner.h"

/// One of ServiceClient's commands to a task.
using TaskCommand = ServiceAnswer (ServiceClient::*)(const QString& taskId, std::stop_token) const;

/// Deletes the task after a question.
CommandOrder CancelTaskOrder(const QString& taskId);
