#include "development/WatchedReader.h"

#include <utility>

void WatchedReader::Submit(Job job) {
    ++*m_pending;
    job.done = [pending = m_pending, done = std::move(job.done)] {
        done();
        --*pending;
    };
    if (m_held)
        m_waiting.push_back(std::move(job));
    else
        m_reader.Submit(std::move(job));
}

void WatchedReader::LetGo() {
    m_held = false;
    for (Job& job : std::exchange(m_waiting, {}))
        m_reader.Submit(std::move(job));
}
