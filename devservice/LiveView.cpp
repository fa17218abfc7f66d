#include "devservice/LiveView.h"

#include "devservice/WorkPlan.h"

using namespace Qt::Literals::StringLiterals;

namespace devservice {

namespace {

void AddRunning(LiveTraceSnapshot& view, const Task& task, const SubTask& subTask) {
    const std::string& path = subTask.parameter1;
    RunningSubTask running;
    running.taskId = QString::fromStdString(task.id);
    running.taskName = QString::fromStdString(task.name);
    running.operation = QString::fromStdString(OperationName(subTask));
    running.fileName = QString::fromStdString(path.substr(path.find_last_of("/\\") + 1));
    running.target = QString::fromStdString(subTask.parameter2);
    running.status = QString::fromStdString(subTask.note);
    const bool moves = DirectionOf(subTask) != Direction::None;
    running.bytesDone = moves ? static_cast<quint64>(subTask.done) : 0;
    running.bytesTotal = moves ? static_cast<quint64>(subTask.size) : 0;
    view.running.push_back(std::move(running));
}

/// Waits for changes of a sync folder.
void AddWatcher(LiveTraceSnapshot& view, const Task& task) {
    RunningSubTask watcher;
    watcher.taskId = QString::fromStdString(task.id);
    watcher.taskName = QString::fromStdString(task.name);
    watcher.operation = u"Watch"_s;
    const std::string& folders = task.description;
    watcher.target = QString::fromStdString(folders.substr(0, folders.find_first_of("\t\n")));
    view.running.push_back(std::move(watcher));
}

} // namespace

LiveTraceSnapshot LiveView(const TaskEngine& engine, char16_t driveLetter) {
    LiveTraceSnapshot view;
    view.counters[TraceCounter::DriveLetter] = driveLetter;
    view.counters[TraceCounter::TaskTable] = engine.ChangeCount();
    view.netIoTotal = {engine.Sent(), engine.Received()};
    for (const auto& [id, task] : engine.Tasks()) {
        quint32 counts[5] = {};
        for (const SubTask& subTask : task.subTasks) {
            ++counts[static_cast<size_t>(subTask.state)];
            if (subTask.state == SubTaskState::Running)
                AddRunning(view, task, subTask);
        }
        if (task.schedule.kind == ScheduleKind::Sync && task.state == TaskState::Pending)
            AddWatcher(view, task);
        const auto count = [&](SubTaskState state) { return counts[static_cast<size_t>(state)]; };
        const quint32 wrong = count(SubTaskState::PendingRetry) + count(SubTaskState::Failed);
        SubTaskCounts& published = view.tasks[QString::fromStdString(id)];
        published.total = static_cast<quint32>(task.subTasks.size());
        published.processed = count(SubTaskState::Done) + wrong; // had their turn, if in vain
        published.running = count(SubTaskState::Running);
        published.pendingRetry = wrong;
    }
    return view;
}

} // namespace devservice
