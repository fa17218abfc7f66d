#include "backup/BackupSummary.h"

#include "list/CellMarkup.h"
#include "plan/BackupTask.h"
#include "taskman/TaskCommands.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

QString Text(const char* words) {
    return QCoreApplication::translate("BackupSummary", words);
}

void Append(std::vector<SummaryRow>& rows, const QString& title, const QStringList& lines) {
    rows.reserve(rows.size() + std::size_t(lines.size()));
    for (qsizetype line = 0; line < lines.size(); ++line)
        rows.push_back({line == 0 ? title : QString(), lines[line]});
}

/// A backup of file types is one of the whole machine, whatever else is named behind it.
QStringList ShownSources(QStringList sources) {
    const qsizetype all = sources.indexOf("@"_L1);
    if (all < 0)
        return sources;
    sources.resize(all);
    return sources << Text(
               QT_TRANSLATE_NOOP("BackupSummary", "All selected file types cross the whole machine"));
}

std::optional<QString> PendingDetail(const SubTaskCounts& counts) {
    return counts.processed <= counts.total ? PendingText(counts) : std::nullopt;
}

std::optional<QString> StatusDetail(TaskState state, const TaskFacts& facts) {
    if (auto progress = BackupProgress(state, facts.counts, facts.work))
        return progress;
    return state == TaskState::Running ? std::nullopt : StateDetail(state);
}

std::vector<SummaryRow> RowsOf(const TaskRow& task, const TaskFacts& facts) {
    const TaskInfo& info = facts.lookup.task;
    const SummaryRow gap{{}, QString()};
    const auto known = [&](const std::optional<QString>& detail) { return IfFound(facts.lookup, detail); };
    std::vector<SummaryRow> rows{
        {Text(QT_TRANSLATE_NOOP("BackupSummary", "Backup Type")),
         BackupKindText(KindOfBackup(task.type, task.description))},
        gap,
        {Text(QT_TRANSLATE_NOOP("BackupSummary", "Status")), known(StatusDetail(info.state, facts))},
        gap,
        {Text(QT_TRANSLATE_NOOP("BackupSummary", "Pending Subtasks")), PendingDetail(facts.counts)},
        {Text(QT_TRANSLATE_NOOP("BackupSummary", "Completed Subtasks")), CompletedText(facts.counts)},
        {Text(QT_TRANSLATE_NOOP("BackupSummary", "Pending Retry Subtasks")),
         CountText(facts.counts.pendingRetry)},
        // Stays empty on purpose: the status row tells how many run.
        {Text(QT_TRANSLATE_NOOP("BackupSummary", "Running Subtasks")), QString()},
        gap,
        {Text(QT_TRANSLATE_NOOP("BackupSummary", "Recurring")), known(info.weekdays.letters)},
        {Text(QT_TRANSLATE_NOOP("BackupSummary", "Last Run Time")),
         info.lastRun.isEmpty() ? task.lastRun : info.lastRun},
        {Text(QT_TRANSLATE_NOOP("BackupSummary", "Next Start Time")),
         known(NextStart(info, Text(QT_TRANSLATE_NOOP("BackupSummary", "N/A"))))},
    };
    const std::vector<SummaryRow> description = BackupDescriptionRows(task);
    rows.insert(rows.end(), description.begin(), description.end());
    return rows;
}

struct StateButtons {
    TaskState state;
    std::vector<TaskAction> actions;
    const char* cancel;
};

std::vector<TaskButton> ButtonsOf(TaskState state) {
    using enum TaskAction;
    const char* const cancel = QT_TRANSLATE_NOOP("BackupSummary", "Cancel");
    const char* const cancelBackup = QT_TRANSLATE_NOOP("BackupSummary", "Cancel Backup");
    // One that waits offers no cancelling.
    const StateButtons table[] = {
        {TaskState::Pending, {StartNow}, nullptr},       {TaskState::Running, {Pause}, cancelBackup},
        {TaskState::Paused, {StartNow, Resume}, cancel}, {TaskState::Failed, {StartNow}, cancel},
        {TaskState::Completed, {}, cancelBackup},
    };
    std::vector<TaskButton> buttons;
    for (const StateButtons& entry : table) {
        if (entry.state != state)
            continue;
        for (const TaskAction action : entry.actions)
            buttons.push_back({action, TaskActionCaption(action)});
        if (entry.cancel)
            buttons.push_back({Cancel, Text(entry.cancel)});
    }
    return buttons;
}

} // namespace

std::vector<SummaryRow> BackupDescriptionRows(const TaskRow& task) {
    const BackupDescription description =
        DescriptionOf(KindOfBackup(task.type, task.description), task.description);
    QStringList exclusions = description.exclusions;
    exclusions.removeAll("*"_L1);
    std::vector<SummaryRow> rows;
    Append(rows, Text(QT_TRANSLATE_NOOP("BackupSummary", "What To Backup")),
           ShownSources(description.sources));
    Append(rows, Text(QT_TRANSLATE_NOOP("BackupSummary", "Exclude")), exclusions);
    Append(rows, Text(QT_TRANSLATE_NOOP("BackupSummary", "Where To Backup")), description.targets);
    return rows;
}

std::optional<QString> BackupProgress(TaskState state, const SubTaskCounts& counts, const RunningWork& work) {
    const quint64 total = counts.total.value_or(0);
    if (!counts.processed || total == 0)
        return {};
    const quint64 processed = *counts.processed;
    const quint64 retry = counts.pendingRetry.value_or(0);
    const QString words =
        Text(QT_TRANSLATE_NOOP("BackupSummary", "%1 of %2 processed, %3 running, %4 pending retry"))
            .arg(processed)
            .arg(total)
            .arg(work.count)
            .arg(retry);
    if (state != TaskState::Running)
        return words;
    const quint64 done = (processed - std::min(retry, processed)) * RunningWork::Whole + work.partial;
    return Cell::Progress(done, total * RunningWork::Whole, words);
}

TaskSummaryPlan BackupSummary() {
    return {Text(QT_TRANSLATE_NOOP("BackupSummary",
                                   "View summary of backup configuration and progress. For detailed "
                                   "completion status, check the history tab. There are additional "
                                   "details on the other tabs.")),
            u"BackupSummary"_s, RowsOf, ButtonsOf, CountsRead::Always};
}
