#include "platform/Environment.h"

#include <cstdlib>

namespace platform {

std::optional<std::string> EnvironmentVariable(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    return value && *value ? std::optional<std::string>(value) : std::nullopt;
}

bool HasEnvironmentVariable(const std::string& name) {
    return std::getenv(name.c_str()) != nullptr;
}

void PutEnvironmentVariable(const std::string& name, const std::optional<std::string>& value) {
    if (value)
        ::setenv(name.c_str(), value->c_str(), 1);
    else
        ::unsetenv(name.c_str());
}

} // namespace platform
