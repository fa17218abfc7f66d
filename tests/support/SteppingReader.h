#pragma once

#include "lanes/JobQueue.h"

#include <array>
#include <vector>

/// A Reader that does nothing until the test says so, on the test's own thread.
class SteppingReader : public Reader {
public:
    void Submit(Job job) override {
        JobQueue& queue = Queue(job.lane);
        queue.Add(std::move(job));
    }

    /// Runs the work of the lane's next job; its `done` is kept back. False when the lane is empty.
    bool Work(Lane lane) {
        std::optional<Job> job = Queue(lane).TakeStopped();
        if (!job)
            job = Queue(lane).TakeNext();
        if (!job)
            return false;
        if (!job->stop.stop_requested())
            job->work(job->stop.get_token());
        m_worked.push_back(std::move(*job));
        return true;
    }

    /// Calls the `done` that was kept back as the given one, oldest first.
    void Finish(std::size_t index = 0) {
        const Job job = std::move(m_worked.at(index));
        m_worked.erase(m_worked.begin() + static_cast<std::ptrdiff_t>(index));
        job.done();
    }

    /// One job from start to end.
    bool Step(Lane lane) {
        if (!Work(lane))
            return false;
        Finish(m_worked.size() - 1);
        return true;
    }

    /// All jobs, those too that come on the way. At most `limit` of them, for pages that always reload.
    int StepAll(int limit = 1000) {
        int steps = 0;
        while (steps < limit && (Step(Lane::Service) || Step(Lane::Databases) || Step(Lane::Computing) ||
                                 Step(Lane::Network) || Step(Lane::Apart)))
            ++steps;
        return steps;
    }

private:
    JobQueue& Queue(Lane lane) { return m_lanes.at(static_cast<std::size_t>(lane)); }

    std::array<JobQueue, LaneCount> m_lanes{JobQueue([] {}), JobQueue([] {}), JobQueue([] {}),
                                            JobQueue([] {}), JobQueue([] {})};
    std::vector<Job> m_worked;
};
