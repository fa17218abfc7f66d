#include "platform/TcpSocket.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace platform {
namespace {

struct ListFree {
    void operator()(addrinfo* list) const { ::freeaddrinfo(list); }
};

int Descriptor(intptr_t handle) {
    return static_cast<int>(handle);
}

/// What a call that moves octets has brought, where nothing at all means the end.
std::optional<size_t> Moved(ssize_t count) {
    if (count >= 0)
        return static_cast<size_t>(count);
    const bool later = errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
    return later ? std::optional<size_t>(0) : std::nullopt;
}

} // namespace

std::vector<TcpAddress> TcpAddressesOf(const std::string& host, uint16_t port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &found) != 0)
        return {};
    const std::unique_ptr<addrinfo, ListFree> list(found);
    std::vector<TcpAddress> addresses;
    for (const addrinfo* each = list.get(); each; each = each->ai_next)
        addresses.push_back(
            {each->ai_family, {reinterpret_cast<const char*>(each->ai_addr), each->ai_addrlen}});
    return addresses;
}

TcpSocket::TcpSocket(const TcpAddress& address)
    : m_handle(::socket(address.family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
    const auto* name = reinterpret_cast<const sockaddr*>(address.octets.data());
    const int begun = ::connect(Descriptor(m_handle), name, static_cast<socklen_t>(address.octets.size()));
    if (m_handle >= 0 && begun != 0 && errno != EINPROGRESS)
        ::close(Descriptor(std::exchange(m_handle, -1)));
}

TcpSocket::~TcpSocket() {
    if (m_handle < 0)
        return;
    ::shutdown(Descriptor(m_handle), SHUT_RDWR);
    ::close(Descriptor(m_handle));
}

bool TcpSocket::Wait(TcpDirection direction, std::chrono::milliseconds time) const {
    if (m_handle < 0)
        return true;
    const bool reads = direction == TcpDirection::Reading;
    pollfd watched{Descriptor(m_handle), static_cast<short>(reads ? POLLIN : POLLOUT), 0};
    return ::poll(&watched, 1, static_cast<int>(time.count())) > 0;
}

bool TcpSocket::IsConnected() const {
    int error = 0;
    socklen_t size = sizeof error;
    return m_handle >= 0 && ::getsockopt(Descriptor(m_handle), SOL_SOCKET, SO_ERROR, &error, &size) == 0 &&
           error == 0;
}

std::optional<size_t> TcpSocket::Send(std::string_view octets) const {
    return Moved(::send(Descriptor(m_handle), octets.data(), octets.size(), MSG_NOSIGNAL));
}

std::optional<size_t> TcpSocket::Receive(char* buffer, size_t size) const {
    const ssize_t count = ::recv(Descriptor(m_handle), buffer, size, 0);
    return count == 0 ? std::nullopt : Moved(count);
}

} // namespace platform
