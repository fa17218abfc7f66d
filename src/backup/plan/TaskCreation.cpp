#include "plan/TaskCreation.h"

#include "stores/SchedulerStore.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Words {
    Q_DECLARE_TR_FUNCTIONS(TaskCreation)
};

CreationEnd Refused(const QString& why, bool silent = false) {
    return {Creation::Refused, why, silent};
}

CreationEnd Unknown(const QString& because, bool silent) {
    return {Creation::Unknown,
            Words::tr("It is not known whether the service took the task: %1").arg(because), silent};
}

/// Of an answer with the status that takes a record.
CreationEnd EndOf(const ServiceAnswer& answer) {
    if (!answer.length)
        return Unknown(Words::tr("its answer broke off in the middle."), false);
    if (answer.body.isEmpty())
        return Refused(
            Words::tr("The service answered without a word, which means that it did not take it."));
    return {Creation::Created};
}

} // namespace

NewTask TaskOf(const BackupDraft& draft) {
    const auto fields = FieldsOf(draft);
    return {u"/schedule/backupex"_s, RecordOf(fields), fields[std::size_t(BackupField::Name)]};
}

NewTask TaskOf(const ApplicationDraft& draft) {
    const auto fields = FieldsOf(draft);
    return {u"/schedule/advbackup"_s, RecordOf(fields), fields[std::size_t(ApplicationField::Name)]};
}

CreationEnd CreateTask(const ServiceClient& service, const NewTask& task, std::stop_token stop) {
    constexpr int Ok = 200;
    const ServiceAnswer answer = service.SendRequest(task.path, u"GET"_s, Ok, task.record, std::move(stop));
    if (answer)
        return EndOf(answer);
    if (answer.outcome == ServiceOutcome::OtherStatus)
        return Refused(Words::tr("The service refused it with status %1.").arg(answer.status));
    if (!answer.sent && answer.outcome == ServiceOutcome::Cancelled)
        return Refused(Words::tr("It was called off before anything was sent."));
    if (!answer.sent)
        return Refused(Words::tr("The service does not answer. Nothing was sent."), true);
    switch (answer.outcome) {
    case ServiceOutcome::TimedOut:
        return Unknown(Words::tr("it did not answer in time."), true);
    case ServiceOutcome::Cancelled:
        return Unknown(Words::tr("its answer was not waited for."), true);
    default:
        return Unknown(Words::tr("the connection ended before it answered."), true);
    }
}

ListedTasks ListTasks(std::stop_token stop) {
    ListedTasks listed;
    listed.read = EnumAllTasks(
        [&listed](const TaskRecord& task) {
            listed.tasks.push_back({task.taskId, task.name});
            return true;
        },
        std::move(stop));
    return listed;
}

QStringList ListedTasks::IdsOf(const QString& name) const {
    QStringList ids;
    for (const Task& task : tasks)
        if (task.name.compare(name, Qt::CaseInsensitive) == 0)
            ids += task.id;
    return ids;
}
