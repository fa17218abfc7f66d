#include "platform/Environment.h"

#include <cstdlib>

namespace platform {

std::optional<std::string> EnvironmentVariable(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

} // namespace platform
