#pragma once

#include "lanes/PageLoader.h"
#include "service/ServiceClient.h"

class UserPrompts;

/// One of ServiceClient's commands to a task.
using TaskCommand = ServiceAnswer (ServiceClient::*)(const QString& taskId, std::stop_token) const;

/// Asks whether to cancel a task; on Yes `send` is called. When the asker is gone by then or shows another
/// task
/// (`isSame` says no), that the task is gone is told instead.
void AskToCancelTask(UserPrompts& prompts, QWidget& asker, std::function<bool()> isSame,
                     std::function<void()> send);

/// Sends the command off the UI thread; `done` is told there whether it was answered.
void SendTaskCommand(PageLoader& loader, const ServiceClient& service, TaskCommand command,
                     const QString& taskId, std::function<void(bool answered)> done);
