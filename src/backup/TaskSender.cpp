#include "backup/TaskSender.h"

#include "page/Console.h"
#include "page/UserPrompts.h"
#include "wizard/BrenPropertySheet.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(TaskSender)
};

} // namespace

void TaskSender::Send(CBrenPropertySheet& sheet, const NewTask& task, const QString& failure,
                      const QStringList& known) {
    const auto send = [this, &sheet, task, failure, known](const QString& busy) {
        SendNow(sheet, task, failure, known, busy);
    };
    if (!m_unsure)
        return send(Words::tr("The service is making the task..."));
    sheet.Commit(
        Lane::Databases,
        Words::tr("Looking whether there is a task \"%1\" already...").arg(m_unsure->task.name),
        [](std::stop_token stop) { return ListTasks(std::move(stop)); },
        [this, &sheet, task, send](const Loaded<ListedTasks>& listed) {
            Judge(sheet, listed.value.value_or(ListedTasks{{ReadOutcome::Failed, listed.why}}), task, send);
        });
}

void TaskSender::Judge(CBrenPropertySheet& sheet, const ListedTasks& listed, const NewTask& task,
                       const std::function<void(const QString& busy)>& send) {
    const QString name = m_unsure->task.name;
    if (!listed.read) {
        const QString unread =
            Words::tr("It is still not known whether the service took the task \"%1\", since the "
                      "list of tasks cannot be read.")
                .arg(name);
        return m_console.prompts.AskYesNo(
            &sheet, unread + u'\n' + Words::tr("Do you really want to send it again? There may be two then."),
            [&sheet, send, unread](bool yes) {
                if (yes)
                    return send(Words::tr("The service is making the task..."));
                sheet.Stay({unread});
            },
            listed.read.Sentence());
    }
    const QStringList ids = listed.IdsOf(name);
    const bool isThere = std::any_of(ids.begin(), ids.end(),
                                     [this](const QString& id) { return !m_unsure->known.contains(id); });
    if (isThere)
        return TellTaken(sheet, task, [send] { send(Words::tr("The service is making the task...")); });
    send(Words::tr("There is no task \"%1\" yet. The service is told again...").arg(name));
}

void TaskSender::TellTaken(CBrenPropertySheet& sheet, const NewTask& task,
                           const std::function<void()>& send) {
    const QString taken =
        Words::tr("The service did take the task: \"%1\" stands in its list now.").arg(m_unsure->task.name);
    if (task == m_unsure->task)
        return m_console.prompts.ShowMessage(&sheet, taken + u'\n' + Words::tr("Nothing was sent again."),
                                             [&sheet] { sheet.Pass(); });
    m_console.prompts.AskYesNo(
        &sheet,
        taken + u'\n' + Words::tr("You have changed it since. Do you really want to make another task?"),
        [&sheet, send, taken](bool yes) {
            if (yes)
                return send();
            sheet.Stay({taken});
        });
}

void TaskSender::SendNow(CBrenPropertySheet& sheet, const NewTask& task, const QString& failure,
                         const QStringList& known, const QString& busy) {
    m_sending = true;
    m_stop = std::stop_source();
    sheet.Commit(
        Lane::Service, busy,
        [service = m_console.service, task, stop = m_stop](const std::stop_token& lane) mutable {
            const std::stop_callback atEnd(lane, [&stop] { stop.request_stop(); });
            return CreateTask(service, task, stop.get_token());
        },
        [this, &sheet, task, failure, known](const Loaded<CreationEnd>& loaded) {
            m_sending = false;
            const CreationEnd end = loaded.value.value_or(CreationEnd{Creation::Unknown, loaded.why});
            if (end.end == Creation::Created)
                return sheet.Pass();
            if (end.end == Creation::Refused)
                return sheet.Stay({failure + u' ' + end.why});
            m_unsure = {task, known};
            sheet.Stay({end.why + u' ' + Words::tr("Finish looks for it before it is sent again.")});
        });
}
