#pragma once

#include <optional>
#include <string>

namespace platform {

/// The variable in UTF-8; none when it is missing or empty.
std::optional<std::string> EnvironmentVariable(const std::string& name);

} // namespace platform
