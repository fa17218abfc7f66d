#pragma once

#include "benchmarks/BenchTable.h"
#include "lanes/Reader.h"

#include <QApplication>
#include <QElapsedTimer>

#include <stdexcept>

/// Runs each job when told, and takes the time of both of its halves.
class TimingReader : public Reader {
public:
    void Submit(Job job) override { m_jobs.push_back(std::move(job)); }

    void RunAll() {
        for (Job& job : std::exchange(m_jobs, {})) {
            lane = MillisecondsOf([&job] { job.work(job.stop.get_token()); });
            window = MillisecondsOf([&job] {
                job.done();
                QApplication::sendPostedEvents();
            });
        }
    }

    double lane = 0;
    double window = 0;

private:
    std::vector<Job> m_jobs;
};

/// Handles events until it holds; throws when that takes a minute. Milliseconds.
template <typename Condition>
double MillisecondsUntil(const QElapsedTimer& since, Condition holds) {
    while (!holds()) {
        if (since.hasExpired(60'000))
            throw std::runtime_error("the page was never filled");
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return static_cast<double>(since.nsecsElapsed()) / 1e6;
}
