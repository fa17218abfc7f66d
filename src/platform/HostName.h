#pragma once

#include <string>

namespace platform {

/// This computer's name as the system gives it; empty when it gives none.
std::string HostName();

} // namespace platform
