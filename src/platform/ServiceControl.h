#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
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
/// A service that has neither file is not installed: OpenService fails. Ends soon after a stop.
ServiceQuery QueryService(const std::string& name, bool serverMode = true, const std::stop_token& stop = {});

/// How the order to start a service went.
struct ServiceStart {
    bool accepted = false;
    std::string refusal; ///< when not accepted: why, in a sentence in UTF-8

    explicit operator bool() const { return accepted; }
};

/// Starts the service without arguments, without waiting for it to run; accepted when the system accepted the
/// start or the service runs already, which one that is just stopping does not. A start command counts only
/// when nobody else can have written it: its file is a plain one of this user or the system's administrator
/// (with `BREN_HOME` also of the user who has raised this program's rights) and writable by its owner alone.
/// Ends soon after a stop, refused where the system has not accepted it until then.
ServiceStart StartService(const std::string& name, bool serverMode = true, const std::stop_token& stop = {});

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

/// Writes `<folder>/<name>.start`, for its owner alone to write; false when it cannot be written or an
/// argument holds a line feed.
bool WriteStartCommand(const std::filesystem::path& folder, const std::string& name,
                       const std::vector<std::string>& command);

} // namespace platform
