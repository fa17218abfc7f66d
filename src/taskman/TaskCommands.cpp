#include "taskman/TaskCommands.h"

#include <QCoreApplication>

CommandOrder CancelTaskOrder(const QString& taskId) {
    const auto text = [](const char* words) { return QCoreApplication::translate("TaskCommands", words); };
    CommandOrder order;
    order.send = [taskId](const ServiceClient& service, std::stop_token stop) {
        return service.DeleteTask(taskId, stop);
    };
    order.question = text(QT_TRANSLATE_NOOP("TaskCommands", "Do you really want to cancel the task?"));
    order.gone = text(QT_TRANSLATE_NOOP("TaskCommands", "The task is no longer there."));
    order.failure = text(QT_TRANSLATE_NOOP("TaskCommands", "The service did not delete the task."));
    return order;
}
