#include "taskman/TaskCommands.h"

void SendTaskCommand(PageLoader& loader, const ServiceClient& service, TaskCommand command,
                     const QString& taskId, std::function<void(bool answered)> done) {
    loader.Command(
        Lane::Service,
        [service, command, taskId](std::stop_token stop) { return (service.*command)(taskId, stop); },
        [done = std::move(done)](const Loaded<ServiceAnswer>& loaded) { done(loaded && *loaded); });
}
