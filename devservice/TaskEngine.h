#pragma once

#include "devservice/Changes.h"
#include "devservice/Databases.h"

#include <cstdint>
#include <functional>
#include <random>

namespace devservice {

/// A task has a file of sub-tasks even when it has none of them, but for thousands of tasks that takes long.
enum class SubTaskFileOf { Every, None };

/// Runs the tasks on a clock of its own: sub-tasks move octets, end, fail, are tried again; runs end in the
/// logs and are scheduled anew. The same seed and the same steps give the same run. One thread at a time.
class TaskEngine {
public:
    explicit TaskEngine(uint64_t seed) : m_random(seed) {}

    /// What a sub-task brings about outside of the tasks when it ends. Returns what went wrong, in words.
    using Effect = std::function<std::string(const Task& task, const SubTask& subTask)>;
    void SetEffect(Effect effect) { m_effect = std::move(effect); }

    /// Goes on from what the files say: what was being processed waits for its turn again.
    void Restore(TaskMap tasks, SimTime now);

    SimTime Now() const { return m_now; }
    const TaskMap& Tasks() const { return m_tasks; }
    Changes& Unwritten() { return m_changes; }
    uint32_t ChangeCount() const { return m_changeCount; } ///< rises with every change of the task table
    uint64_t Sent() const { return m_sent; }
    uint64_t Received() const { return m_received; }

    void Advance(std::chrono::milliseconds time);

    /// The commands say whether there is such a task or sub-task; one that its state gives nothing to do
    /// does nothing.
    bool Start(const std::string& id);
    bool Pause(const std::string& id);
    bool Resume(const std::string& id);
    bool Delete(const std::string& id);
    bool DeleteSubTask(const std::string& id, int number);

    std::string Add(Task task); ///< under a new identifier, which it returns
    void Put(Task task, SubTaskFileOf files = SubTaskFileOf::Every);
    bool SetState(const std::string& id, TaskState state);
    bool PutSubTasks(const std::string& id, std::vector<SubTask> subTasks);
    bool SetSubTaskState(const std::string& id, int number, SubTaskState state);
    void Trace(int level, const Task& task, const std::string& message);

private:
    Task* Find(const std::string& id);
    void Touch(const Task& task);
    void Touch(const Task& task, const SubTask& subTask);
    void TouchAll(const Task& task);
    std::chrono::milliseconds QuietTime(std::chrono::milliseconds most) const;

    void Step(Task& task, std::chrono::milliseconds time);
    void BeginRun(Task& task);
    void Work(Task& task, std::chrono::milliseconds time);
    void FillSlots(Task& task, int running);
    void Move(Task& task, SubTask& subTask, std::chrono::milliseconds time);
    void Finish(Task& task, SubTask& subTask);
    void GoWrong(Task& task, SubTask& subTask);
    void EndRun(Task& task, const std::string& reason);
    void Halt(Task& task);

    Effect m_effect;
    TaskMap m_tasks;
    Changes m_changes;
    SimTime m_now{};
    std::mt19937_64 m_random;
    uint32_t m_changeCount = 1;
    uint64_t m_sent = 0;
    uint64_t m_received = 0;
};

} // namespace devservice
