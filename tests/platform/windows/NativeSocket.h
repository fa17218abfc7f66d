#pragma once

#include <winsock2.h>
#include <ws2tcpip.h>

using NativeSocket = SOCKET;
using AddressSize = int;

constexpr int SendFlags = 0;
constexpr int EndOfSending = SD_SEND;
constexpr DWORD TenSeconds = 10'000;

inline SOCKET OpenSocket(int type) {
    static const bool ready = [] {
        WSADATA data;
        return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    return ready ? ::socket(AF_INET, type, 0) : INVALID_SOCKET;
}
inline SOCKET AcceptFrom(SOCKET listener) {
    return ::accept(listener, nullptr, nullptr);
}
inline void CloseSocket(SOCKET socket) {
    ::closesocket(socket);
}
