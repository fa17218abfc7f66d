#pragma once

#include <winsock2.h>

namespace platform {

/// Whether the socket library can be used; it stays loaded from the first question on.
inline bool SocketsReady() {
    static const bool ready = [] {
        WSADATA data;
        return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    return ready;
}

} // namespace platform
