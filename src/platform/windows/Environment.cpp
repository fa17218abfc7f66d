#include "platform/Environment.h"
#include "platform/windows/WideText.h"

#include <windows.h>

namespace platform {

std::optional<std::string> EnvironmentVariable(const std::string& name) {
    const std::wstring wideName = Wide(name);
    std::wstring value(::GetEnvironmentVariableW(wideName.c_str(), nullptr, 0), L'\0');
    value.resize(::GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size())));
    return value.empty() ? std::nullopt : std::optional(Narrow(value));
}

bool HasEnvironmentVariable(const std::string& name) {
    return ::GetEnvironmentVariableW(Wide(name).c_str(), nullptr, 0) > 0;
}

void PutEnvironmentVariable(const std::string& name, const std::optional<std::string>& value) {
    ::SetEnvironmentVariableW(Wide(name).c_str(), value ? Wide(*value).c_str() : nullptr);
}

} // namespace platform
