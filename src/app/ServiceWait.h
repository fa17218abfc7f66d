#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

/// Whether the background service runs, as the service manager tells it; what went wrong is in the trace.
struct ServiceCheck {
    bool running = false;
    bool openFailed = false; ///< the user is told of this one: "Open Service Manager Failed\n"
};
ServiceCheck CheckService();

/// Waits on a thread of its own for the service to answer, starting it first where that is allowed. The
/// thread owns all it uses; destruction stops it within about a second, also inside a request.
class ServiceWait {
public:
    enum class State { Waiting, Answered, StartRefused, GaveUp };

    struct Steps {
        std::function<ServiceCheck()> check;
        std::function<bool()> start;
        std::function<bool(std::stop_token)> probe; ///< whether the service answers
    };

    /// The steps against the real service.
    static Steps RealSteps();

    static constexpr int Tries = 30;
    static constexpr std::chrono::milliseconds Interval{500};

    ServiceWait(Steps steps, bool mayStartService, std::chrono::milliseconds interval = Interval);

    State CurrentState() const { return m_state; }
    /// True once after the service manager refused to open the service.
    bool TakeOpenFailed() { return m_openFailed.exchange(false); }

private:
    State Run(const std::stop_token& stop, bool mayStartService, std::chrono::milliseconds interval);

    Steps m_steps;
    std::atomic<State> m_state = State::Waiting;
    std::atomic<bool> m_openFailed = false;
    std::jthread m_thread;
};
