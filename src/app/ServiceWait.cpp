#include "app/ServiceWait.h"

#include "platform/ServiceControl.h"
#include "platform/Sleep.h"
#include "service/ServiceClient.h"
#include "zep/TracePrintf.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const char ServiceName[] = "brengroupsvc";

bool ProbeService(const std::stop_token& stop) {
    const QString probe = u"Dummy"_s;
    const ServiceClient client;
    return client.SetBoolSetting(probe, true, stop) && client.GetBoolSetting(probe, false, stop);
}

} // namespace

ServiceCheck CheckService(const std::stop_token& stop) {
    const platform::ServiceQuery query = platform::QueryService(ServiceName, true, stop);
    const auto trace = [](const QString& line) { TracePrintf(TraceLevel::Info, line); };
    switch (query.failedAt) {
    case platform::ServiceQueryStep::OpenManager:
        trace(u"OpenSCManager failed (%1)\n"_s.arg(query.errorCode));
        return {};
    case platform::ServiceQueryStep::OpenService:
        return {.openFailed = true};
    case platform::ServiceQueryStep::QueryStatus:
        trace(u"QueryServiceStatusEx failed (%1)\n"_s.arg(query.errorCode));
        break;
    case platform::ServiceQueryStep::Done:
        if (query.state == platform::ServiceState::Running)
            return {.running = true};
        break;
    }
    trace(u"Finish Cleanup.\n"_s);
    return {.stopping = query.state == platform::ServiceState::StopPending};
}

ServiceWait::Steps ServiceWait::RealSteps() {
    const auto start = [](const std::stop_token& stop) {
        const platform::ServiceStart started = platform::StartService(ServiceName, true, stop);
        if (!started)
            TracePrintf(TraceLevel::Error,
                        u"[Service]Not started. "_s + QString::fromStdString(started.refusal));
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
        platform::SleepUnlessStopped(stop, interval);
    }
    return State::GaveUp;
}

/// Whether the service may answer sooner or later: it runs, has been started, or is not ours to start.
bool ServiceWait::IsUp(const std::stop_token& stop, bool mayStartService,
                       std::chrono::milliseconds interval) {
    ServiceCheck check = m_steps.check(stop);
    m_openFailed = check.openFailed;
    for (int attempt = 0; mayStartService && check.stopping && attempt < Tries; ++attempt) {
        if (!platform::SleepUnlessStopped(stop, interval))
            return false;
        check = m_steps.check(stop);
    }
    return check.running || !mayStartService || (!stop.stop_requested() && m_steps.start(stop));
}
