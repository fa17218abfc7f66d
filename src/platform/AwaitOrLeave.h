#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <type_traits>

namespace platform {

using Deadline = std::chrono::steady_clock::time_point;

/// What a call of the system's brings that nothing breaks off; none when the stop or the deadline comes
/// first. The call is then left to end by itself, so `work` captures values only.
template <typename Work>
std::optional<std::invoke_result_t<Work&>> AwaitOrLeave(Work work, std::stop_token stop,
                                                        Deadline until = Deadline::max()) {
    /// What the caller and the thread share; the last of them takes it away.
    struct Shared {
        std::mutex mutex;
        std::condition_variable_any arrived;
        std::optional<std::invoke_result_t<Work&>> result;
    };
    const auto shared = std::make_shared<Shared>();
    std::thread([shared, work = std::move(work)]() mutable {
        auto result = work();
        const std::lock_guard lock(shared->mutex);
        shared->result = std::move(result);
        shared->arrived.notify_all();
    }).detach();
    std::unique_lock lock(shared->mutex);
    const auto isThere = [&] { return shared->result.has_value(); };
    if (until == Deadline::max())
        shared->arrived.wait(lock, std::move(stop), isThere);
    else
        shared->arrived.wait_until(lock, std::move(stop), until, isThere);
    return std::move(shared->result);
}

} // namespace platform
