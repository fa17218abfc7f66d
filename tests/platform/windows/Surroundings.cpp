#include "../Surroundings.h"
#include "platform/windows/WideText.h"

#include <windows.h>

void VariableSet::Set(const std::string& name, const std::optional<std::string>& value) {
    ::SetEnvironmentVariableW(platform::Wide(name).c_str(), value ? platform::Wide(*value).c_str() : nullptr);
}
