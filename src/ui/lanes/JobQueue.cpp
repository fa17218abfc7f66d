#include "lanes/JobQueue.h"

#include <algorithm>

std::optional<Reader::Job> JobQueue::TakeNext() {
    auto best = m_waiting.end();
    ReadPriority bestPriority = ReadPriority::Hidden;
    for (auto place = m_waiting.begin(); place != m_waiting.end(); ++place) {
        const ReadPriority priority = place->job.priority();
        if (best == m_waiting.end() || priority < bestPriority) {
            best = place;
            bestPriority = priority;
        }
    }
    return Take(best);
}

std::optional<Reader::Job> JobQueue::TakeStopped() {
    return Take(std::find_if(m_waiting.begin(), m_waiting.end(),
                             [](const Waiting& waiting) { return waiting.job.stop.stop_requested(); }));
}

std::optional<Reader::Job> JobQueue::Take(std::list<Waiting>::iterator place) {
    if (place == m_waiting.end())
        return {};
    std::optional<Reader::Job> job = std::move(place->job);
    m_waiting.erase(place);
    return job;
}
