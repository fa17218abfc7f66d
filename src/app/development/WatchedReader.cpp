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

bool WatchedReader::IsQuiet() {
    constexpr int wanted = 4;
    m_quietSteps = IsIdle() ? m_quietSteps + 1 : 0;
    if (m_quietSteps < wanted)
        return false;
    m_quietSteps = 0;
    return true;
}

void WatchedReader::LetGo() {
    m_held = false;
    for (Job& job : std::exchange(m_waiting, {}))
        m_reader.Submit(std::move(job));
}
