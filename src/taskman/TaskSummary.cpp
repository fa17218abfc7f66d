#include "taskman/TaskSummary.h"

#include "list/BrenListCtrl.h"
#include "look/IconRegistry.h"
#include "page/CommandRunner.h"
#include "stores/TaskState.h"
#include "taskman/TaskClass.h"

#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr std::chrono::milliseconds FirstRefresh{100};
constexpr std::chrono::milliseconds RefreshPeriod{1000};
constexpr int DetailColumn = 1;

enum Row {
    TypeRow,
    StatusRow,
    Gap1,
    PendingRow,
    CompletedRow,
    RetryRow,
    RunningRow,
    Gap2,
    RecurringRow,
    LastRow,
    NextRow
};

std::vector<ListRow> EmptyRows() {
    const QStringList titles{CTaskSummary::tr("Task Type"),
                             CTaskSummary::tr("Status"),
                             {},
                             CTaskSummary::tr("Pending Subtasks"),
                             CTaskSummary::tr("Completed Subtasks"),
                             CTaskSummary::tr("Pending Retry Subtasks"),
                             CTaskSummary::tr("Running Subtasks"),
                             {},
                             CTaskSummary::tr("Recurring"),
                             CTaskSummary::tr("Last Run Time"),
                             CTaskSummary::tr("Next Start Time")};
    std::vector<ListRow> rows;
    for (const QString& title : titles)
        rows.emplace_back(QString::number(rows.size()), QStringList{title, QString()});
    return rows;
}

/// None for a state that leaves the row as it is.
std::optional<QString> StateText(int state) {
    switch (static_cast<TaskState>(state)) {
    case TaskState::Pending:
        return CTaskSummary::tr("Pending");
    case TaskState::Paused:
        return CTaskSummary::tr("Paused");
    case TaskState::Failed:
        return CTaskSummary::tr("Failed");
    case TaskState::Completed:
        return CTaskSummary::tr("Completed");
    case TaskState::Running:
    case TaskState::Held:
        break;
    }
    return {};
}

QString ProgressText(const SubTaskCounts& counts) {
    const quint32 total = counts.total.value_or(0);
    const quint32 processed = std::min(counts.processed.value_or(0), total);
    const QString words = CTaskSummary::tr("%1 of %2 processed, %3 running, %4 pending retry")
                              .arg(processed)
                              .arg(total)
                              .arg(counts.running.value_or(0))
                              .arg(counts.pendingRetry.value_or(0));
    return total == 0 ? words : Cell::Progress(processed, total, words);
}

} // namespace

CTaskSummary::CTaskSummary(const Console& console, QString taskId, const QString& type)
    : CBrenPanel(console), m_taskId(std::move(taskId)), m_typeName(TaskTypeName(type)) {
    SetHelp(tr("View summary information for this task. Click on a different task to change views. Note "
               "the actions above (Start, Pause, Cancel, Refresh)."));
    ReloadEvery(RefreshPeriod, FirstRefresh);
    connect(&Commands(), &CommandRunner::BusyChanged, this, [this] { ShowToolbar(m_state); });
}

void CTaskSummary::CreatePanel() {
    m_list = new CBrenListCtrl(TheConsole().prompts);
    m_list->setAccessibleName(tr("Summary"));
    m_list->AddColumn(tr("Info"), 170);
    m_list->AddColumn(tr("Detail"), 220);
    m_list->RememberWidths(QStringLiteral("TaskSummary"));
    m_list->SetRows(EmptyRows());
    SetDetail(TypeRow, m_typeName);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->addWidget(m_list);
}

void CTaskSummary::SetTask(const QString& taskId, const QString& type) {
    if (m_taskId == taskId)
        return;
    Loader().Cancel();
    m_taskId = taskId;
    m_typeName = TaskTypeName(type);
    m_state = -1;
    m_changes.reset();
    m_counts = {};
    if (!m_list)
        return;
    m_list->SetRows(EmptyRows());
    SetDetail(TypeRow, m_typeName);
    if (IsActive())
        Refresh();
}

void CTaskSummary::Activate() {
    m_state = -1;
    m_changes.reset();
    SetToolbar({});
    CBrenPanel::Activate();
}

void CTaskSummary::Refresh() {
    Loader().Load(
        Lane::Databases,
        [id = m_taskId, counters = &TheConsole().counters, known = m_changes](std::stop_token stop) {
            Reading reading;
            reading.lookup = GetTaskInfo(id, stop);
            reading.changes = counters->ZEPTraceCounterGet(TraceCounter::TaskTable);
            if (reading.changes != known)
                reading.counts = counters->ZEPTraceGetSTaskInfo(id);
            return reading;
        },
        [this](const Loaded<Reading>& loaded) {
            if (loaded && IsActive())
                Show(*loaded);
        });
}

void CTaskSummary::Show(const Reading& reading) {
    if (reading.counts) {
        if (reading.counts->total)
            m_changes = reading.changes;
        ShowCounts(*reading.counts);
    }
    TellFailure(reading.lookup.read.Sentence());
    if (!reading.lookup)
        return;
    const TaskInfo& task = reading.lookup.task;
    const bool waits = task.state != int(TaskState::Running) && task.state != int(TaskState::Paused);
    SetDetail(LastRow, task.lastRun);
    SetDetail(NextRow, waits && !task.nextRun.isEmpty() ? task.nextRun : tr("NA"));
    SetDetail(RecurringRow,
              task.weekdays.letters.isEmpty() ? tr("Not a Recurring Task") : task.weekdays.letters);
    if (m_state != task.state) {
        m_state = task.state;
        ShowToolbar(task.state);
    }
    ShowStatus();
}

void CTaskSummary::ShowCounts(const SubTaskCounts& counts) {
    m_counts = counts;
    const auto known = [this](Row row, const std::optional<quint32>& count) {
        if (count)
            SetDetail(row, QString::number(*count));
    };
    known(RetryRow, counts.pendingRetry);
    known(RunningRow, counts.running);
    if (!counts.processed)
        return;
    // What went wrong has been processed too, but is not completed.
    known(CompletedRow, *counts.processed - std::min(counts.pendingRetry.value_or(0), *counts.processed));
    if (counts.total) {
        SetDetail(PendingRow, tr("%1 of %2 total sub-tasks")
                                  .arg(*counts.total - std::min(*counts.processed, *counts.total))
                                  .arg(*counts.total));
    }
}

void CTaskSummary::ShowStatus() {
    if (m_state == int(TaskState::Running)) {
        SetDetail(StatusRow, m_counts.total ? ProgressText(m_counts) : tr("Running"));
    } else if (const auto text = StateText(m_state)) {
        SetDetail(StatusRow, *text);
    }
}

void CTaskSummary::ShowToolbar(int state) {
    const auto command = [this](const QString& caption, int image, TaskCommand send) {
        const auto run = [this, caption, send] { Send(caption, send); };
        return FrameAction{caption, image, run, !Commands().IsBusy(caption)};
    };
    const FrameAction start = command(tr("Start Now"), StartNowIcon, &ServiceClient::StartTaskNow);
    const FrameAction pause = command(tr("Pause"), PauseIcon, &ServiceClient::PauseTask);
    const FrameAction resume = command(tr("Resume"), ResumeIcon, &ServiceClient::ResumeTask);
    const FrameAction cancel{tr("Cancel Task"), CancelTaskIcon, [this] { CancelTask(); },
                             !Commands().IsBusy(tr("Cancel Task"))};
    const FrameAction refresh = RefreshAction(tr("Refresh"));
    std::vector<FrameAction> actions;
    switch (static_cast<TaskState>(state)) {
    case TaskState::Pending:
    case TaskState::Failed:
        actions = {start, pause, cancel, refresh};
        break;
    case TaskState::Running:
        actions = {pause, cancel, refresh};
        break;
    case TaskState::Paused:
        actions = {start, resume, cancel, refresh};
        break;
    case TaskState::Completed:
        actions = {refresh};
        break;
    case TaskState::Held:
        break;
    }
    SetToolbar(actions);
}

void CTaskSummary::Send(const QString& key, TaskCommand command) {
    CommandOrder order;
    order.send = [command, id = m_taskId](const ServiceClient& service, std::stop_token stop) {
        return (service.*command)(id, stop);
    };
    order.failure = tr("The service did not take the command \"%1\".").arg(key);
    order.after = [this](bool) { Refresh(); };
    Commands().Run(key, order);
}

void CTaskSummary::CancelTask() {
    CommandOrder order = CancelTaskOrder(m_taskId);
    order.isStillMeant = [this, id = m_taskId] { return id == m_taskId; };
    order.after = [this](bool) {
        if (IsActive())
            Refresh();
        emit Deleted();
    };
    Commands().Run(tr("Cancel Task"), order);
}

void CTaskSummary::SetDetail(int row, const QString& text) {
    m_list->SetCellText(row, DetailColumn, text);
}
