#include "platform/HostName.h"
#include "platform/windows/Sockets.h"

#include <array>

namespace platform {

std::string HostName() {
    std::array<char, 256> name{};
    const bool told = SocketsReady() && ::gethostname(name.data(), static_cast<int>(name.size()) - 1) == 0;
    return told ? name.data() : std::string();
}

} // namespace platform
