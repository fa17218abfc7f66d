#include "app/ServiceWait.h"

#include "platform/ServiceControl.h"
#include "platform/Sleep.h"
#include "service/ServiceClient.h"
#include "zep/TracePrintf.h"

namespace {

const char ServiceName[] = "brengroupsvc";

bool ProbeService(std::stop_token stop) {
    const QString probe = QStringLiteral("Dummy");
    const ServiceClient client;
    return client.SetBoolSetting(probe, true, stop) && client.GetBoolSetting(probe, false, stop);
}

} // namespace

ServiceCheck CheckService() {
    const platform::ServiceQuery query = platform::QueryService(ServiceName);
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
    return {};
}

ServiceWait::Steps ServiceWait::RealSteps() {
    return {CheckService, [] { return platform::StartService(ServiceName); }, ProbeService};
}

ServiceWait::ServiceWait(Steps steps, bool mayStartService, std::chrono::milliseconds interval)
    : m_steps(std::move(steps)), m_thread([this, mayStartService, interval](const std::stop_token& stop) {
          m_state = Run(stop, mayStartService, interval);
      }) {}

ServiceWait::State ServiceWait::Run(const std::stop_token& stop, bool mayStartService,
                                    std::chrono::milliseconds interval) {
    const ServiceCheck check = m_steps.check();
    m_openFailed = check.openFailed;
    if (!check.running && mayStartService && !m_steps.start())
        return State::StartRefused;
    for (int attempt = 0; attempt < Tries && !stop.stop_requested(); ++attempt) {
        if (m_steps.probe(stop))
            return State::Answered;
        platform::SleepUnlessStopped(stop, interval);
    }
    return State::GaveUp;
}
