#include "ctl/TaskOperand.h"

#include "stores/SchedulerStore.h"

using namespace Qt::Literals::StringLiterals;

TaskOperand FindTask(const Invocation& invocation, const QString& operand) {
    if (operand.startsWith(QLatin1Char(IdentifierMark)))
        return {operand};
    QStringList found;
    const ReadResult read = EnumAllTasks(
        [&](const TaskRecord& task) {
            if (task.name.compare(operand, Qt::CaseInsensitive) == 0)
                found += task.taskId;
            return true;
        },
        invocation.stop);
    if (!read)
        return {{}, invocation.End(read)};
    if (found.isEmpty())
        return {{}, invocation.End(CtlExit::Refused, u"There is no task \"%1\"."_s.arg(operand))};
    if (found.size() > 1)
        return {{},
                invocation.End(CtlExit::Refused,
                               u"%1 tasks are called \"%2\": %3."_s.arg(QString::number(found.size()),
                                                                        operand, found.join(u", "_s)))};
    return {found.first()};
}
