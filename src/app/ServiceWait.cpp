#include "app/ServiceWait.h"

#include "platform/ServiceControl.h"
#include "service/ServiceClient.h"
#include "zep/TracePrintf.h"

#include <condition_variable>
#include <mutex>

namespace {

const char ServiceName[] = "brengroupsvc";

/// Sleeps, but not beyond a stop request.
void Pause(const std::stop_token& stop, std::chrono::milliseconds duration) {
    std::mutex mutex;
    std::condition_variable_any wake;
    std::unique_lock lock(mutex);
    wake.wait_for(lock, stop, duration, [] { return false; });
}

bool ProbeService(const std::stop_token& stop) {
    const QString probe = QStringLiteral("Dummy");
    const ServiceClient client;
    return client.SetBoolSetting(probe, true, stop) && client.GetBoolSetting(probe, false, stop);
}

} // namespace

ServiceCheck CheckService(const std::stop_token& stop) {
    const platform::ServiceQuery query = platform::QueryService(ServiceName, true, stop);
    const auto trace = [](const QString& line) { TracePrintf(TraceLevel::Info, line); };
    switch (query.failedAt) {
    case platform::ServiceQueryStep::OpenManager:
        trace(QStringLiteral("OpenSCManager failed (%1)\n").arg(query.errorCode));
        return {};
    case platform::ServiceQueryStep::OpenService:
        return {.openFailed = true};
    case platform::ServiceQueryStep::QueryStatus:
        trace(QStringLiteral("QueryServiceStatusEx failed (%1)\n").arg(query.errorCode));
        break;
    case platform::ServiceQueryStep::Done:
        if (query.state == platform::ServiceState::Running)
            return {.running = true};
        break;
    }
    trace(QStringLiteral("Finish Cleanup.\n"));
    return {.stopping = query.state == platform::ServiceState::StopPending};
}

ServiceWait::Steps ServiceWait::RealSteps() {
    const auto start = [](const std::stop_token& stop) {
        const platform::ServiceStart started = platform::StartService(ServiceName, true, stop);
        if (!started)
            TracePrintf(TraceLevel::Error,
                        QStringLiteral("[Service]Not started. ") + QString::fromStdString(started.refusal));
        return started.accepted;
    };
    return {CheckService, start, ProbeService};
}

ServiceWait::ServiceWait(Steps steps, bool mayStartService, std::chrono::milliseconds interval)
    : m_steps(std::move(steps)), m_state(mayStartService ? State::Starting : State::Waiting),
      m_thread([this, mayStartService, interval](const std::stop_token& stop) {
          m_state = Run(stop, mayStartService, interval);
      }) {}

ServiceWait::State ServiceWait::Run(const std::stop_token& stop, bool mayStartService,
                                    std::chrono::milliseconds interval) {
    if (!IsUp(stop, mayStartService, interval))
        return stop.stop_requested() ? State::GaveUp : State::StartRefused;
    m_state = State::Waiting;
    for (int attempt = 0; attempt < Tries && !stop.stop_requested(); ++attempt) {
        if (m_steps.probe(stop))
            return State::Answered;
        Pause(stop, interval);
    }
    return State::GaveUp;
}

/// Whether the service may answer sooner or later: it runs, has been started, or is not ours to start.
bool ServiceWait::IsUp(const std::stop_token& stop, bool mayStartService,
                       std::chrono::milliseconds interval) {
    ServiceCheck check = m_steps.check(stop);
    m_openFailed = check.openFailed;
    for (int attempt = 0; mayStartService && check.stopping && attempt < Tries; ++attempt) {
        Pause(stop, interval);
        if (stop.stop_requested())
            return false;
        check = m_steps.check(stop);
    }
    return check.running || !mayStartService || (!stop.stop_requested() && m_steps.start(stop));
}
