#include "../Socket.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace {

sockaddr_in Loopback(uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void Check(bool succeeded) {
    if (!succeeded)
        throw std::runtime_error("a socket of the test failed");
}

SOCKET Open(int type) {
    static const bool ready = [] {
        WSADATA data;
        return ::WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }();
    Check(ready);
    const SOCKET handle = ::socket(AF_INET, type, 0);
    Check(handle != INVALID_SOCKET);
    return handle;
}

intptr_t Bound(int type) {
    const SOCKET handle = Open(type);
    const sockaddr_in address = Loopback(0);
    Check(::bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
    return static_cast<intptr_t>(handle);
}

SOCKET Native(intptr_t handle) {
    return static_cast<SOCKET>(handle);
}

} // namespace

Socket Socket::Listening(int backlog) {
    const intptr_t handle = Bound(SOCK_STREAM);
    Check(::listen(Native(handle), backlog) == 0);
    return Socket(handle);
}

Socket Socket::Connected(uint16_t port) {
    const SOCKET handle = Open(SOCK_STREAM);
    const sockaddr_in address = Loopback(port);
    Check(::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
    return Socket(static_cast<intptr_t>(handle));
}

Socket Socket::Datagrams() {
    const intptr_t handle = Bound(SOCK_DGRAM);
    const DWORD patience = 10'000;
    Check(::setsockopt(Native(handle), SOL_SOCKET, SO_RCVTIMEO, reinterpret_cast<const char*>(&patience),
                       sizeof patience) == 0);
    return Socket(handle);
}

Socket::Socket(Socket&& other) noexcept : m_handle(std::exchange(other.m_handle, -1)) {}

Socket& Socket::operator=(Socket&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
}

Socket::~Socket() {
    if (m_handle >= 0)
        ::closesocket(Native(m_handle));
}

uint16_t Socket::Port() const {
    sockaddr_in address{};
    int size = sizeof address;
    Check(::getsockname(Native(m_handle), reinterpret_cast<sockaddr*>(&address), &size) == 0);
    return ntohs(address.sin_port);
}

Socket Socket::Accept() const {
    const SOCKET handle = ::accept(Native(m_handle), nullptr, nullptr);
    Check(handle != INVALID_SOCKET);
    return Socket(static_cast<intptr_t>(handle));
}

std::string Socket::Receive() const {
    std::array<char, 65536> octets{};
    const int count = ::recv(Native(m_handle), octets.data(), octets.size(), 0);
    return {octets.data(), count > 0 ? static_cast<size_t>(count) : 0};
}

bool Socket::Send(std::string_view octets) const {
    while (!octets.empty()) {
        const int count = ::send(Native(m_handle), octets.data(), static_cast<int>(octets.size()), 0);
        if (count <= 0)
            return false;
        octets.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

void Socket::EndSending() const {
    ::shutdown(Native(m_handle), SD_SEND);
}

void Socket::Reset() {
    const linger abort{1, 0};
    ::setsockopt(Native(m_handle), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&abort),
                 sizeof abort);
    ::closesocket(Native(std::exchange(m_handle, -1)));
}

std::string Socket::ReceiveFrom(Sender& sender) const {
    std::array<char, 4096> octets{};
    sockaddr_in from{};
    int size = sizeof from;
    const int count = ::recvfrom(Native(m_handle), octets.data(), octets.size(), 0,
                                 reinterpret_cast<sockaddr*>(&from), &size);
    sender = {static_cast<uint32_t>(from.sin_addr.s_addr), from.sin_port};
    return {octets.data(), count > 0 ? static_cast<size_t>(count) : 0};
}

void Socket::SendTo(const Sender& sender, std::string_view octets) const {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = sender.address;
    to.sin_port = sender.port;
    ::sendto(Native(m_handle), octets.data(), static_cast<int>(octets.size()), 0,
             reinterpret_cast<const sockaddr*>(&to), sizeof to);
}
