#pragma once

#include "lanes/Reader.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

/// Does each job when it is told to, on this thread.
class HeldReader : public Reader {
public:
    void Submit(Job job) override { m_jobs.push_back(std::move(job)); }
    /// The lane's share; what is left is the window's.
    void Work() {
        for (const Job& job : m_jobs)
            job.work(job.stop.get_token());
    }
    void Answer() {
        for (const Job& job : std::exchange(m_jobs, {}))
            job.done();
    }

    bool HasJobs() const { return !m_jobs.empty(); }

private:
    std::vector<Job> m_jobs;
};

/// The longest time that the window does nothing else while events are handled.
class StallWatch {
public:
    void Handle(const std::function<bool()>& goesOn) {
        QElapsedTimer since;
        while (goesOn()) {
            since.start();
            QCoreApplication::processEvents(QEventLoop::AllEvents, 0);
            longest = std::max(longest, double(since.nsecsElapsed()) / 1e6);
        }
    }
    double longest = 0;
};
