#pragma once

#include "service/ServiceClient.h"
#include "ui/PageLoader.h"

/// One of ServiceClient's commands to a task.
using TaskCommand = ServiceAnswer (ServiceClient::*)(const QString& taskId, std::stop_token) const;

/// Sends the command off the UI thread; `done` is told there whether it was answered.
void SendTaskCommand(PageLoader& loader, const ServiceClient& service, TaskCommand command,
                     const QString& taskId, std::function<void(bool answered)> done);
