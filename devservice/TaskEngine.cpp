#include "devservice/TaskEngine.h"

#include "devservice/WorkPlan.h"

#include <algorithm>
#include <cstdio>

namespace devservice {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds LongestStep = 200ms;
constexpr milliseconds RetryPause = 20s;
constexpr int Slots = 3;                ///< sub-tasks of a task that run at the same time
constexpr int MostRetries = 3;          ///< then a sub-task has failed
constexpr int64_t PlainOperation = 400; ///< milliseconds of what moves no octets
constexpr uint64_t OneInRuns = 40;      ///< how many transfers there are to one that goes wrong for a while

/// Octets a millisecond: transfers differ, but each keeps its pace.
int64_t SpeedOf(const SubTask& subTask) {
    return 80 + subTask.number * 97 % 300;
}

bool Waits(const Task& task) {
    return task.state == TaskState::Pending || task.state == TaskState::Failed;
}

int Count(const Task& task, SubTaskState state) {
    return static_cast<int>(std::count_if(task.subTasks.begin(), task.subTasks.end(),
                                          [state](const SubTask& each) { return each.state == state; }));
}

std::string FailureOf(int subTasks) {
    return std::to_string(subTasks) + (subTasks == 1 ? " sub-task failed" : " sub-tasks failed");
}

std::string Quoted(const std::string& text) {
    return '"' + text + '"';
}

} // namespace

void TaskEngine::Restore(TaskMap tasks, SimTime now) {
    m_tasks = std::move(tasks);
    m_now = now;
    m_changes = {};
    ++m_changeCount;
    for (auto& [id, task] : m_tasks)
        Halt(task);
}

void TaskEngine::Advance(milliseconds time) {
    while (time > 0ms) {
        const milliseconds step = std::min(time, std::max(LongestStep, QuietTime(time)));
        m_now += step;
        time -= step;
        for (auto& [id, task] : m_tasks)
            Step(task, step);
    }
}

/// How long nothing happens, at most `most`: while no task runs, until the next is due.
milliseconds TaskEngine::QuietTime(milliseconds most) const {
    for (const auto& [id, task] : m_tasks) {
        if (task.state == TaskState::Running)
            return 0ms;
        if (Waits(task) && task.nextRun)
            most = std::min(most, *task.nextRun - m_now);
    }
    return most;
}

void TaskEngine::Step(Task& task, milliseconds time) {
    if (Waits(task) && task.nextRun && *task.nextRun <= m_now)
        BeginRun(task);
    else if (task.state == TaskState::Running)
        Work(task, time);
}

void TaskEngine::BeginRun(Task& task) {
    const bool anew = Count(task, SubTaskState::Done) == static_cast<int>(task.subTasks.size());
    if (anew)
        task.subTasks = PlanWork(task, m_random);
    for (SubTask& subTask : task.subTasks) {
        if (subTask.state != SubTaskState::Failed && subTask.state != SubTaskState::PendingRetry)
            continue;
        subTask.state = SubTaskState::Pending;
        subTask.retries = 0;
        Touch(task, subTask);
    }
    task.state = TaskState::Running;
    task.lastRun = m_now;
    task.nextRun = task.schedule.NextRun(m_now);
    ++task.runCount;
    Trace(0, task, "Task " + Quoted(task.name) + " has started");
    Touch(task);
    if (anew)
        TouchAll(task);
}

void TaskEngine::Work(Task& task, milliseconds time) {
    int running = 0;
    bool waiting = false;
    for (SubTask& subTask : task.subTasks) {
        if (subTask.state == SubTaskState::Running)
            Move(task, subTask, time);
        if (subTask.state == SubTaskState::PendingRetry && subTask.retryAt <= m_now) {
            subTask.state = SubTaskState::Pending;
            Touch(task, subTask);
        }
        running += subTask.state == SubTaskState::Running;
        waiting |= subTask.state == SubTaskState::Pending || subTask.state == SubTaskState::PendingRetry;
    }
    if (waiting)
        FillSlots(task, running);
    else if (running == 0)
        EndRun(task, {});
}

void TaskEngine::FillSlots(Task& task, int running) {
    for (SubTask& subTask : task.subTasks) {
        if (running >= Slots)
            return;
        if (subTask.state != SubTaskState::Pending)
            continue;
        if (ClosesRun(subTask) && running > 0)
            return; // it speaks of all before it
        subTask.state = SubTaskState::Running;
        Touch(task, subTask);
        ++running;
    }
}

void TaskEngine::Move(Task& task, SubTask& subTask, milliseconds time) {
    const Direction direction = DirectionOf(subTask);
    const bool moves = direction != Direction::None && subTask.size > 0;
    const int64_t total = moves ? subTask.size : PlainOperation;
    const int64_t before = subTask.done;
    ++m_changeCount; // progress shows, too
    subTask.done = std::min(total, before + time.count() * (moves ? SpeedOf(subTask) : 1));
    if (moves)
        (direction == Direction::Upload ? m_sent : m_received) +=
            static_cast<uint64_t>(subTask.done - before);
    if (subTask.done == total)
        Finish(task, subTask);
}

void TaskEngine::Finish(Task& task, SubTask& subTask) {
    subTask.done = 0;
    std::string trouble = LastingTrouble(subTask);
    if (trouble.empty() && DirectionOf(subTask) != Direction::None && subTask.retries == 0 &&
        m_random() % OneInRuns == 0)
        trouble = PassingTrouble(m_random);
    if (trouble.empty() && m_effect)
        trouble = m_effect(task, subTask);
    subTask.note = trouble;
    if (trouble.empty())
        subTask.state = SubTaskState::Done;
    else
        GoWrong(task, subTask);
    Touch(task, subTask);
}

void TaskEngine::GoWrong(Task& task, SubTask& subTask) {
    ++subTask.retries;
    const bool last = subTask.retries >= MostRetries;
    subTask.state = last ? SubTaskState::Failed : SubTaskState::PendingRetry;
    subTask.retryAt = m_now + RetryPause;
    const std::string what =
        OperationName(subTask) + " of " + Quoted(subTask.parameter1) + " failed: " + subTask.note;
    Trace(last ? 2 : 1, task, last ? what : what + ", it will be tried again");
}

/// Ends the run by itself (no reason) or for a reason from outside.
void TaskEngine::EndRun(Task& task, const std::string& reason) {
    const int failed = Count(task, SubTaskState::Failed);
    const int total = static_cast<int>(task.subTasks.size());
    if (reason.empty()) {
        const bool once = task.schedule.kind == ScheduleKind::Once;
        task.state = failed > 0 ? TaskState::Failed : once ? TaskState::Completed : TaskState::Pending;
    }
    const std::string outcome = !reason.empty() ? reason
                                : failed > 0    ? FailureOf(failed)
                                                : "Completed successfully";
    m_changes.processLog.push_back({task.id, task.lastRun.value_or(m_now), m_now, outcome, total, failed,
                                    Count(task, SubTaskState::Done) + failed});
    Trace(failed > 0 ? 2 : 0, task, "Task " + Quoted(task.name) + " has ended: " + outcome);
    Touch(task);
}

/// What is being processed waits for its turn again.
void TaskEngine::Halt(Task& task) {
    for (SubTask& subTask : task.subTasks) {
        if (subTask.state != SubTaskState::Running)
            continue;
        subTask.state = SubTaskState::Pending;
        Touch(task, subTask);
    }
}

bool TaskEngine::Start(const std::string& id) {
    Task* task = Find(id);
    if (task && task->state != TaskState::Running)
        BeginRun(*task);
    return task;
}

bool TaskEngine::Resume(const std::string& id) {
    Task* task = Find(id);
    if (task && task->state == TaskState::Paused)
        BeginRun(*task);
    return task;
}

bool TaskEngine::Pause(const std::string& id) {
    Task* task = Find(id);
    if (!task || task->state == TaskState::Completed || task->state == TaskState::Paused)
        return task;
    const bool wasRunning = task->state == TaskState::Running;
    task->state = TaskState::Paused;
    Halt(*task);
    if (wasRunning)
        EndRun(*task, "Paused by the user");
    Touch(*task);
    return true;
}

bool TaskEngine::Delete(const std::string& id) {
    Task* task = Find(id);
    if (!task)
        return false;
    Trace(0, *task, "Task " + Quoted(task->name) + " was deleted");
    Touch(*task);
    TouchAll(*task);
    m_tasks.erase(id);
    return true;
}

bool TaskEngine::DeleteSubTask(const std::string& id, int number) {
    Task* task = Find(id);
    const SubTask* subTask = task ? task->Find(number) : nullptr;
    if (!subTask)
        return false;
    Trace(0, *task, OperationName(*subTask) + " of " + Quoted(subTask->parameter1) + " was removed");
    Touch(*task, *subTask);
    task->subTasks.erase(task->subTasks.begin() + (subTask - task->subTasks.data()));
    return true;
}

std::string TaskEngine::Add(Task task) {
    char id[64];
    std::snprintf(id, sizeof id, "{%08X-%04X-4%03X-A%03X-%012llX}", static_cast<unsigned>(m_random()),
                  static_cast<unsigned>(m_random() & 0xFFFF), static_cast<unsigned>(m_random() & 0xFFF),
                  static_cast<unsigned>(m_random() & 0xFFF),
                  static_cast<unsigned long long>(m_random() & 0xFFFFFFFFFFFF));
    task.id = id;
    Trace(0, task, "Task " + Quoted(task.name) + " was created");
    Put(std::move(task));
    return id;
}

void TaskEngine::Put(Task task, SubTaskFileOf files) {
    std::sort(task.subTasks.begin(), task.subTasks.end(),
              [](const SubTask& a, const SubTask& b) { return a.number < b.number; });
    Touch(task);
    if (files == SubTaskFileOf::Every)
        TouchAll(task);
    const std::string id = task.id;
    m_tasks.insert_or_assign(id, std::move(task));
}

bool TaskEngine::SetState(const std::string& id, TaskState state) {
    Task* task = Find(id);
    if (!task)
        return false;
    task->state = state;
    Touch(*task);
    return true;
}

bool TaskEngine::PutSubTasks(const std::string& id, std::vector<SubTask> subTasks) {
    const Task* task = Find(id);
    if (!task)
        return false;
    Task changed = *task;
    changed.subTasks = std::move(subTasks);
    Put(std::move(changed));
    return true;
}

bool TaskEngine::SetSubTaskState(const std::string& id, int number, SubTaskState state) {
    Task* task = Find(id);
    SubTask* subTask = task ? task->Find(number) : nullptr;
    if (!subTask)
        return false;
    subTask->state = state;
    Touch(*task, *subTask);
    return true;
}

void TaskEngine::Trace(int level, const Task& task, const std::string& message) {
    m_changes.audit.push_back({level, TaskTrace(task.id, message), m_now});
}

Task* TaskEngine::Find(const std::string& id) {
    const auto found = m_tasks.find(id);
    return found == m_tasks.end() ? nullptr : &found->second;
}

void TaskEngine::Touch(const Task& task) {
    m_changes.tasks.insert(task.id);
    ++m_changeCount;
}

void TaskEngine::Touch(const Task& task, const SubTask& subTask) {
    m_changes.subTasks[task.id].numbers.insert(subTask.number);
    ++m_changeCount;
}

void TaskEngine::TouchAll(const Task& task) {
    m_changes.subTasks[task.id].all = true;
}

} // namespace devservice
