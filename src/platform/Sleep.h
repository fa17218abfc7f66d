#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stop_token>

namespace platform {

/// Sleeps that long, or until it is told to stop; false then.
inline bool SleepUnlessStopped(const std::stop_token& stop, std::chrono::milliseconds time) {
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any().wait_for(lock, stop, time, [] { return false; });
    return !stop.stop_requested();
}

} // namespace platform
