#include "taskman/TaskCommands.h"

#include "look/Formatters.h"
#include "look/IconRegistry.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Command {
    const char* caption;
    int image;
    ServiceAnswer (ServiceClient::*send)(const QString& taskId, std::stop_token) const;
    const char* notDone;
};

/// By action.
constexpr Command Commands[] = {
    {QT_TRANSLATE_NOOP("TaskCommands", "Start Now"), StartNowIcon, &ServiceClient::StartTaskNow,
     QT_TRANSLATE_NOOP("TaskCommands", "Not started")},
    {QT_TRANSLATE_NOOP("TaskCommands", "Pause"), PauseIcon, &ServiceClient::PauseTask,
     QT_TRANSLATE_NOOP("TaskCommands", "Not paused")},
    {QT_TRANSLATE_NOOP("TaskCommands", "Resume"), ResumeIcon, &ServiceClient::ResumeTask,
     QT_TRANSLATE_NOOP("TaskCommands", "Not resumed")},
    {QT_TRANSLATE_NOOP("TaskCommands", "Cancel Task"), CancelTaskIcon, &ServiceClient::DeleteTask,
     QT_TRANSLATE_NOOP("TaskCommands", "Not cancelled")},
};

const Command& CommandOf(TaskAction action) {
    return Commands[static_cast<std::size_t>(action)];
}

QString Text(const char* words) {
    return QCoreApplication::translate("TaskCommands", words);
}

} // namespace

QString TaskActionCaption(TaskAction action) {
    return Text(CommandOf(action).caption);
}

int TaskActionImage(TaskAction action) {
    return CommandOf(action).image;
}

QString TaskOrderKey(TaskAction action, const QString& taskId) {
    return QLatin1String(CommandOf(action).caption) + taskId;
}

QString TaskNotDone(TaskAction action) {
    return Text(CommandOf(action).notDone);
}

CommandOrder TaskOrder(TaskAction action, const QString& taskId, const QString& name) {
    CommandOrder order;
    order.send = [send = CommandOf(action).send, taskId](const ServiceClient& service, std::stop_token stop) {
        return (service.*send)(taskId, stop);
    };
    order.notDone = u"%1 (%2)"_s.arg(TaskNotDone(action), Isolated(name));
    if (action == TaskAction::Cancel) {
        order.title = name;
        order.question =
            Text(QT_TRANSLATE_NOOP("TaskCommands", "Do you really want to cancel the task?")) + u'\n' +
            Text(QT_TRANSLATE_NOOP("TaskCommands", "\"%1\" will be deleted for good. Its files stay."))
                .arg(Isolated(name));
        order.gone = Text(QT_TRANSLATE_NOOP("TaskCommands", "The task is no longer there."));
    }
    return order;
}
