#include "lanes/ThreadReader.h"

#include "lanes/JobQueue.h"
#include "platform/Sleep.h"

#include <QMetaObject>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace {

/// How long the commands that were given may still take when the program ends.
constexpr std::chrono::seconds CommandGrace{5};

} // namespace

/// A lane: its waiting jobs on the UI thread, and a thread that is handed the work of one job at a time.
class ThreadReader::LaneThread {
public:
    explicit LaneThread(std::function<void()> wake)
        : m_wake(std::move(wake)), m_waiting(m_wake), m_thread([this](std::stop_token stop) { Run(stop); }) {}

    /// Tells a running read to stop, without waiting for it.
    void StopRead() {
        if (m_current && !IsCommand(*m_current))
            m_current->stop.request_stop();
    }

    /// Waits for what runs, then carries out the commands that still wait, until `giveUp`.
    void Finish(const std::stop_token& giveUp) {
        const std::stop_callback stopCurrent(giveUp, [this] {
            if (m_current)
                m_current->stop.request_stop();
        });
        m_thread.request_stop();
        m_thread.join();
        while (std::optional<Job> job = m_waiting.TakeNext()) {
            if (IsCommand(*job) && !job->stop.stop_requested())
                job->work(giveUp);
        }
    }

    void Add(Job job) {
        ++m_jobs;
        m_waiting.Add(std::move(job));
    }
    bool IsFree() const { return m_jobs == 0; }

    /// Ends what has finished or was stopped, then starts the next job if the thread is free.
    void Pump() {
        if (m_current && TakeFinished())
            End(std::exchange(m_current, std::nullopt));
        while (std::optional<Job> stopped = m_waiting.TakeStopped())
            End(std::move(stopped));
        if (m_current)
            return;
        m_current = m_waiting.TakeNext();
        if (m_current)
            Start(*m_current);
    }

private:
    void End(std::optional<Job> job) {
        --m_jobs;
        job->done();
    }
    static bool IsCommand(const Job& job) { return job.priority() == ReadPriority::Command; }

    void Start(Job& job) {
        const std::lock_guard lock(m_mutex);
        m_work = [work = std::move(job.work), stop = job.stop.get_token()] { work(stop); };
        m_ready.notify_one();
    }

    bool TakeFinished() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_finished, false);
    }

    void Run(std::stop_token stop) {
        std::unique_lock lock(m_mutex);
        while (m_ready.wait(lock, stop, [this] { return m_work != nullptr; })) {
            std::function<void()> work = std::exchange(m_work, nullptr);
            lock.unlock();
            work();
            work = nullptr;
            lock.lock();
            m_finished = true;
            m_wake();
        }
    }

    const std::function<void()> m_wake;
    JobQueue m_waiting;
    std::optional<Job> m_current;
    int m_jobs = 0; ///< that have not ended

    std::mutex m_mutex;
    std::condition_variable_any m_ready;
    std::function<void()> m_work; ///< under the mutex, as is the next
    bool m_finished = false;

    std::jthread m_thread; ///< last: it starts when all else stands, and is joined first
};

ThreadReader::ThreadReader() {
    for (std::size_t lane = 0; lane < LaneCount; ++lane)
        AddThread();
}

ThreadReader::LaneThread& ThreadReader::AddThread() {
    const auto wake = [this] { QMetaObject::invokeMethod(this, "Pump", Qt::QueuedConnection); };
    return *m_lanes.emplace_back(std::make_unique<LaneThread>(wake));
}

ThreadReader::~ThreadReader() {
    for (const std::unique_ptr<LaneThread>& lane : m_lanes)
        lane->StopRead();
    std::stop_source giveUp;
    const std::jthread watch([&giveUp](const std::stop_token& stop) {
        if (platform::SleepUnlessStopped(stop, CommandGrace))
            giveUp.request_stop();
    });
    for (const std::unique_ptr<LaneThread>& lane : m_lanes)
        lane->Finish(giveUp.get_token());
}

ThreadReader::LaneThread& ThreadReader::ThreadFor(Lane lane) {
    const auto own = m_lanes.begin() + static_cast<std::ptrdiff_t>(lane);
    if (lane != Lane::Apart)
        return **own;
    const auto free = std::find_if(own, m_lanes.end(), [](const auto& thread) { return thread->IsFree(); });
    return free == m_lanes.end() ? AddThread() : **free;
}

void ThreadReader::Submit(Job job) {
    LaneThread& lane = ThreadFor(job.lane);
    lane.Add(std::move(job));
    QMetaObject::invokeMethod(this, "Pump", Qt::QueuedConnection);
}

void ThreadReader::Pump() {
    // A job that ends may bring another one, and that a thread.
    for (std::size_t lane = 0; lane < m_lanes.size();)
        m_lanes[lane++]->Pump();
}
