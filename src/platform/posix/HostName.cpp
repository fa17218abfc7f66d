#include "platform/HostName.h"

#include <unistd.h>

#include <array>

namespace platform {

std::string HostName() {
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : std::string();
}

} // namespace platform
