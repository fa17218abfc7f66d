#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using NativeSocket = int;
using AddressSize = socklen_t;

constexpr int SendFlags = MSG_NOSIGNAL;
constexpr int EndOfSending = SHUT_WR;
constexpr timeval TenSeconds{10, 0};

inline int OpenSocket(int type) {
    return ::socket(AF_INET, type | SOCK_CLOEXEC, 0);
}
inline int AcceptFrom(int listener) {
    return ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
}
inline void CloseSocket(int socket) {
    ::close(socket);
}
