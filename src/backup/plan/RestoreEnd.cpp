#include "plan/RestoreEnd.h"

#include "plan/BackupRuns.h"
#include "stores/SchedulerStore.h"
#include "zep/Text.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString Text(const char* words) {
    return QCoreApplication::translate("RestoreEnd", words);
}

} // namespace

RestoreEnd ReadRestoreEnd(const QString& name, const std::stop_token& stop) {
    QString id;
    bool running = false;
    EnumAllTasks(
        [&](const TaskRecord& task) {
            const bool found = task.name.compare(name, Qt::CaseInsensitive) == 0;
            if (found) {
                id = task.taskId;
                running = task.state == TaskState::Running;
            }
            return !found;
        },
        stop);
    std::vector<ProcessLogRecord> log;
    if (id.isEmpty() || running || !FillProcessLog(id, log, stop) || log.empty())
        return {};
    return {true, id, RunsOf(log).last};
}

QString RestoredText(const ProcessLogRecord& run) {
    if (run.processedSubTasks <= 0)
        return Text(QT_TRANSLATE_NOOP("RestoreEnd", "Nothing was restored (%1)")).arg(run.stopReason);
    const int restored = std::max(0, run.processedSubTasks - run.failedSubTasks);
    const QString text = Text(QT_TRANSLATE_NOOP("RestoreEnd", "%1 restored")).arg(GroupedNumber(restored));
    const QString failed = FailedText(run);
    return failed.isEmpty() ? text : text + u", "_s + failed;
}

QString FailedText(const ProcessLogRecord& run) {
    if (run.failedSubTasks <= 0)
        return {};
    return Text(QT_TRANSLATE_NOOP("RestoreEnd", "%1 failed")).arg(GroupedNumber(run.failedSubTasks));
}
