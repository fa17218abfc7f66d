#include "platform/posix/Systemd.h"
#include "platform/Environment.h"
#include "platform/posix/Process.h"

#include <sstream>
#include <unordered_map>

namespace platform {

bool SystemdRules() {
    return !EnvironmentVariable("BREN_HOME") && ::access("/run/systemd/system", F_OK) == 0;
}

std::optional<ServiceQuery> QuerySystemd(const std::string& name, const std::stop_token& stop) {
    const Printed shown =
        RunAndRead({"systemctl", "show", "--property=LoadState,ActiveState", "--", name + ".service"}, stop);
    if (shown.exitCode != 0)
        return ServiceQuery{ServiceQueryStep::OpenManager, shown.exitCode, ServiceState::Unknown};
    return ReadUnitState(shown.text);
}

bool StartBySystemd(const std::string& name, const std::stop_token& stop) {
    return RunAndRead({"systemctl", "start", "--no-block", "--", name + ".service"}, stop).exitCode == 0;
}

std::optional<ServiceQuery> ReadUnitState(const std::string& properties) {
    static const std::unordered_map<std::string, ServiceState> states = {
        {"active", ServiceState::Running},          {"reloading", ServiceState::Running},
        {"activating", ServiceState::StartPending}, {"deactivating", ServiceState::StopPending},
        {"inactive", ServiceState::Stopped},        {"failed", ServiceState::Stopped},
    };
    std::unordered_map<std::string, std::string> values;
    std::istringstream lines(properties);
    for (std::string line; std::getline(lines, line);) {
        const size_t equals = line.find('=');
        if (equals != std::string::npos)
            values[line.substr(0, equals)] = line.substr(equals + 1);
    }
    if (values["LoadState"].empty() || values["LoadState"] == "not-found")
        return {};
    const auto state = states.find(values["ActiveState"]);
    return ServiceQuery{ServiceQueryStep::Done, 0,
                        state == states.end() ? ServiceState::Unknown : state->second};
}

} // namespace platform
