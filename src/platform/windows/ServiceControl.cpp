#include "platform/ServiceControl.h"
#include "platform/Folders.h"
#include "platform/SharedFile.h"
#include "platform/windows/WideText.h"

#include <windows.h>

#include <chrono>
#include <future>
#include <thread>

// The header speaks of these names, not of the system's macros.
#undef OpenService
#undef StartService

namespace platform {
namespace {

constexpr std::chrono::milliseconds StopPeriod{50};

struct ServiceHandleCloser {
    void operator()(SC_HANDLE handle) const { ::CloseServiceHandle(handle); }
};

using ServiceHandle = std::unique_ptr<std::remove_pointer_t<SC_HANDLE>, ServiceHandleCloser>;

ServiceHandle OpenManager() {
    return ServiceHandle(
        ::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT | SC_MANAGER_ENUMERATE_SERVICE));
}

ServiceHandle OpenNamed(const ServiceHandle& manager, const std::string& name, DWORD rights) {
    return ServiceHandle(::OpenServiceW(manager.get(), Wide(name).c_str(), rights));
}

ServiceQuery FailedAt(ServiceQueryStep step) {
    return {step, static_cast<int>(::GetLastError()), ServiceState::Unknown};
}

ServiceState StateOf(DWORD state) {
    switch (state) {
    case SERVICE_STOPPED:
        return ServiceState::Stopped;
    case SERVICE_START_PENDING:
    case SERVICE_CONTINUE_PENDING:
        return ServiceState::StartPending;
    case SERVICE_STOP_PENDING:
        return ServiceState::StopPending;
    case SERVICE_RUNNING:
        return ServiceState::Running;
    case SERVICE_PAUSE_PENDING:
    case SERVICE_PAUSED:
        return ServiceState::Paused;
    default:
        return ServiceState::Unknown;
    }
}

ServiceStart Refused() {
    return {false, "The service manager refused with error " + std::to_string(::GetLastError()) + '.'};
}

ServiceStart Start(const std::string& name) {
    const ServiceHandle manager = OpenManager();
    const ServiceHandle service =
        manager ? OpenNamed(manager, name, SERVICE_START | SERVICE_QUERY_STATUS) : nullptr;
    if (!service)
        return Refused();
    if (::StartServiceW(service.get(), 0, nullptr))
        return {true, {}};
    SERVICE_STATUS status = {};
    // The manager says the same of a service that is stopping.
    if (::GetLastError() != ERROR_SERVICE_ALREADY_RUNNING || !::QueryServiceStatus(service.get(), &status))
        return Refused();
    return {status.dwCurrentState != SERVICE_STOP_PENDING, "It is still stopping."};
}

} // namespace

ServiceQuery QueryService(const std::string& name, bool, const std::stop_token&) {
    const ServiceHandle manager = OpenManager();
    if (!manager)
        return FailedAt(ServiceQueryStep::OpenManager);
    const ServiceHandle service = OpenNamed(manager, name, SERVICE_QUERY_STATUS);
    if (!service)
        return FailedAt(ServiceQueryStep::OpenService);
    SERVICE_STATUS_PROCESS status = {};
    DWORD size = 0;
    if (!::QueryServiceStatusEx(service.get(), SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status),
                                sizeof status, &size))
        return FailedAt(ServiceQueryStep::QueryStatus);
    return {ServiceQueryStep::Done, 0, StateOf(status.dwCurrentState)};
}

ServiceStart StartService(const std::string& name, bool, const std::stop_token& stop) {
    // The manager keeps its caller until the service's program has reported, for half a minute at worst.
    std::packaged_task<ServiceStart()> task([name] { return Start(name); });
    std::future<ServiceStart> accepted = task.get_future();
    std::thread(std::move(task)).detach();
    while (accepted.wait_for(StopPeriod) != std::future_status::ready) {
        if (stop.stop_requested())
            return {false, "Stopped before the service manager answered."};
    }
    return accepted.get();
}

struct ServiceLock::State {
    FileLock lock;
};

ServiceLock::ServiceLock(std::unique_ptr<State> state) : m_state(std::move(state)) {}
ServiceLock::ServiceLock(ServiceLock&&) noexcept = default;
ServiceLock& ServiceLock::operator=(ServiceLock&&) noexcept = default;
ServiceLock::~ServiceLock() = default;

std::optional<ServiceLock> ServiceLock::Take(const std::filesystem::path& folder, const std::string& name) {
    MakeFolders(folder);
    std::optional<FileLock> lock = FileLock::TryAcquire(folder / Wide(name + ".lock"));
    if (!lock)
        return {};
    return ServiceLock(std::make_unique<State>(State{std::move(*lock)}));
}

void ServiceLock::SetState(ServiceState) {
    // Nobody reads it here: the service control manager is asked.
}

} // namespace platform
