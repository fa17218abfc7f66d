#pragma once

#include <QString>

#include <mutex>

/// How far a piece of work is. Counts of what the work counts; a total of 0 is not known.
struct Progress {
    qint64 done = 0;
    qint64 total = 0;
    QString text;

    bool operator==(const Progress&) const = default;
};

/// Where a lane notes its progress and the window reads it in its own time. Any thread.
class ProgressNote {
public:
    void Tell(Progress progress) {
        const std::lock_guard lock(m_mutex);
        m_progress = std::move(progress);
    }

    Progress Read() const {
        const std::lock_guard lock(m_mutex);
        return m_progress;
    }

private:
    mutable std::mutex m_mutex;
    Progress m_progress;
};
