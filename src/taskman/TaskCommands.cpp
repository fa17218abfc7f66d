#include "taskman/TaskCommands.h"

#include "page/UserPrompts.h"

#include <QCoreApplication>
#include <QPointer>

void SendTaskCommand(PageLoader& loader, const ServiceClient& service, TaskCommand command,
                     const QString& taskId, std::function<void(bool answered)> done) {
    loader.Command(
        Lane::Service,
        [service, command, taskId](std::stop_token stop) { return (service.*command)(taskId, stop); },
        [done = std::move(done)](const Loaded<ServiceAnswer>& loaded) { done(loaded && *loaded); });
}

void AskToCancelTask(UserPrompts& prompts, QWidget& asker, std::function<bool()> isSame,
                     std::function<void()> send) {
    const auto text = [](const char* words) { return QCoreApplication::translate("TaskCommands", words); };
    const QPointer<QWidget> window(asker.window());
    const auto onAnswer = [&prompts, text, window, asks = QPointer(&asker), isSame = std::move(isSame),
                           send = std::move(send)](bool yes) {
        if (yes && asks && isSame())
            send();
        else if (yes)
            prompts.ShowMessage(window,
                                text(QT_TRANSLATE_NOOP("TaskCommands", "The task is no longer there.")));
    };
    prompts.AskYesNo(
        window, text(QT_TRANSLATE_NOOP("TaskCommands", "Do you really want to cancel the task?")), onAnswer);
}
