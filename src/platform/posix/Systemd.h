#pragma once

#include "platform/ServiceControl.h"

namespace platform {

/// Whether systemd runs this system and `BREN_HOME` does not make a world of its own.
bool SystemdRules();

/// The state of a unit; none when systemd does not know it.
std::optional<ServiceQuery> QuerySystemd(const std::string& name, const std::stop_token& stop);

bool StartBySystemd(const std::string& name, const std::stop_token& stop);

/// Reads what "systemctl show" prints of LoadState and ActiveState; none when the unit is not known.
std::optional<ServiceQuery> ReadUnitState(const std::string& properties);

} // namespace platform
