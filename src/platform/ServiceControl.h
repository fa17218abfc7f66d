#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {

enum class ServiceState { Unknown, Stopped, StartPending, StopPending, Running, Paused };

/// The steps of asking for a service's state that can fail, in their order.
enum class ServiceQueryStep { Done, OpenManager, OpenService, QueryStatus };

struct ServiceQuery {
    ServiceQueryStep failedAt = ServiceQueryStep::Done;
    int errorCode = 0; ///< the system's, of the step that failed
    ServiceState state = ServiceState::Unknown;
};

/// The state of a service, asked of the service control manager. A system without one asks systemd where
/// that runs and knows the unit `<name>.service`; otherwise, and always when `BREN_HOME` is set, it looks
/// into DataFolder(serverMode):
/// - `<name>.lock` is locked by the running service and holds its state in one word (see ServiceLock);
/// - `<name>.start` holds the command that starts the service: UTF-8 text, one argument a line, the absolute
///   path of the program in the first, empty lines left out.
/// A service that has neither file is not installed: OpenService fails.
ServiceQuery QueryService(const std::string& name, bool serverMode = true);

/// Starts the service without arguments, without waiting for it to run; true when the system accepted the
/// start or the service runs already.
bool StartService(const std::string& name, bool serverMode = true);

/// Held by a service while it runs, where the system has no service control manager.
class ServiceLock {
public:
    /// Locks `<folder>/<name>.lock`, made when missing, in the state Running; none when another holds it.
    static std::optional<ServiceLock> Take(const std::filesystem::path& folder, const std::string& name);

    ServiceLock(ServiceLock&&) noexcept;
    ServiceLock& operator=(ServiceLock&&) noexcept;
    ~ServiceLock();

    /// What QueryService answers from now on, as "running", "start-pending", "stop-pending" or "paused".
    void SetState(ServiceState state);

private:
    struct State;
    explicit ServiceLock(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

/// Writes `<folder>/<name>.start`; false when it cannot be written or an argument holds a line feed.
bool WriteStartCommand(const std::filesystem::path& folder, const std::string& name,
                       const std::vector<std::string>& command);

} // namespace platform
