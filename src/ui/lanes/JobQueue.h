#pragma once

#include "lanes/Reader.h"

#include <list>
#include <optional>

/// The jobs of a lane that wait for their turn. UI thread only.
class JobQueue {
public:
    /// `wake` is called, on the thread that asks, when a waiting job is told to stop.
    explicit JobQueue(std::function<void()> wake) : m_wake(std::move(wake)) {}

    void Add(Reader::Job job) { m_waiting.emplace_back(std::move(job), m_wake); }

    /// The oldest job of the highest priority.
    std::optional<Reader::Job> TakeNext();

    /// The oldest job that was told to stop.
    std::optional<Reader::Job> TakeStopped();

private:
    struct Waiting {
        Waiting(Reader::Job waiting, const std::function<void()>& wake)
            : job(std::move(waiting)), onStop(job.stop.get_token(), wake) {}

        Reader::Job job;
        std::stop_callback<std::function<void()>> onStop;
    };

    std::optional<Reader::Job> Take(std::list<Waiting>::iterator place);

    std::function<void()> m_wake;
    std::list<Waiting> m_waiting;
};
