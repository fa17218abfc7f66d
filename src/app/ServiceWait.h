#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

/// Whether the background service runs, as the service manager tells it; what went wrong is in the trace.
struct ServiceCheck {
    bool running = false;
    bool stopping = false;   ///< it can be started only when that has ended
    bool openFailed = false; ///< the user is told of this one: "Open Service Manager Failed\n"
};
ServiceCheck CheckService(const std::stop_token& stop = {});

/// Waits on a thread of its own for the service to answer, starting it first where that is allowed. The
/// thread owns all it uses; destruction ends it within a second, whichever step it is in.
class ServiceWait {
public:
    /// Starting: the system has not taken the order to start the service yet.
    enum class State { Starting, Waiting, Answered, StartRefused, GaveUp };

    /// Each ends within a second of the token.
    struct Steps {
        std::function<ServiceCheck(const std::stop_token&)> check;
        std::function<bool(const std::stop_token&)> start;
        std::function<bool(const std::stop_token&)> probe; ///< whether the service answers
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
    bool IsUp(const std::stop_token& stop, bool mayStartService, std::chrono::milliseconds interval);

    Steps m_steps;
    std::atomic<State> m_state;
    std::atomic<bool> m_openFailed = false;
    std::jthread m_thread;
};
