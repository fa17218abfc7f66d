#pragma once

#include "zep/LiveCounters.h"

#include <QHash>

#include <chrono>
#include <vector>

/// What the running transfers of a task have moved and have left, in octets.
struct TransferProgress {
    quint64 done = 0;
    quint64 left = 0;
    std::optional<quint32> secondsLeft; ///< empty until their speed is known
};

/// Tells from one sample of a task's running sub-tasks to the next how fast it moves its files.
class TransferMeter {
public:
    using Clock = std::chrono::steady_clock;

    TransferProgress Sample(const std::vector<RunningSubTask>& running, Clock::time_point now);

private:
    QHash<QString, quint64> m_done; ///< octets of the last sample, by transfer
    Clock::time_point m_at;
    std::optional<double> m_speed; ///< octets a second
};

/// What was moved and what is left, "1.234 MB, 5.678 MB (00:01:20) Remaining": short, for a card's band.
QString TransferText(const TransferProgress& progress);
