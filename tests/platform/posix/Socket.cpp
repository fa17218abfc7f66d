#include "../Socket.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

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

int Checked(int result) {
    if (result < 0)
        throw std::runtime_error("a socket of the test failed");
    return result;
}

int Bound(int type) {
    const int handle = Checked(::socket(AF_INET, type | SOCK_CLOEXEC, 0));
    const sockaddr_in address = Loopback(0);
    Checked(::bind(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    return handle;
}

} // namespace

Socket Socket::Listening(int backlog) {
    const int handle = Bound(SOCK_STREAM);
    Checked(::listen(handle, backlog));
    return Socket(handle);
}

Socket Socket::Connected(uint16_t port) {
    const int handle = Checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in address = Loopback(port);
    Checked(::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address));
    return Socket(handle);
}

Socket Socket::Datagrams() {
    const int handle = Bound(SOCK_DGRAM);
    const timeval patience{10, 0};
    Checked(::setsockopt(handle, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience));
    return Socket(handle);
}

Socket::Socket(Socket&& other) noexcept : m_handle(std::exchange(other.m_handle, -1)) {}

Socket& Socket::operator=(Socket&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
}

Socket::~Socket() {
    if (m_handle >= 0)
        ::close(static_cast<int>(m_handle));
}

uint16_t Socket::Port() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    Checked(::getsockname(static_cast<int>(m_handle), reinterpret_cast<sockaddr*>(&address), &size));
    return ntohs(address.sin_port);
}

Socket Socket::Accept() const {
    return Socket(Checked(::accept4(static_cast<int>(m_handle), nullptr, nullptr, SOCK_CLOEXEC)));
}

std::string Socket::Receive() const {
    std::array<char, 65536> octets{};
    const ssize_t count = ::recv(static_cast<int>(m_handle), octets.data(), octets.size(), 0);
    return {octets.data(), count > 0 ? static_cast<size_t>(count) : 0};
}

bool Socket::Send(std::string_view octets) const {
    while (!octets.empty()) {
        const ssize_t count = ::send(static_cast<int>(m_handle), octets.data(), octets.size(), MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        octets.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

void Socket::EndSending() const {
    ::shutdown(static_cast<int>(m_handle), SHUT_WR);
}

void Socket::Reset() {
    const linger abort{1, 0};
    ::setsockopt(static_cast<int>(m_handle), SOL_SOCKET, SO_LINGER, &abort, sizeof abort);
    ::close(static_cast<int>(std::exchange(m_handle, -1)));
}

std::string Socket::ReceiveFrom(Sender& sender) const {
    std::array<char, 4096> octets{};
    sockaddr_in from{};
    socklen_t size = sizeof from;
    const ssize_t count = ::recvfrom(static_cast<int>(m_handle), octets.data(), octets.size(), 0,
                                     reinterpret_cast<sockaddr*>(&from), &size);
    sender = {from.sin_addr.s_addr, from.sin_port};
    return {octets.data(), count > 0 ? static_cast<size_t>(count) : 0};
}

void Socket::SendTo(const Sender& sender, std::string_view octets) const {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = sender.address;
    to.sin_port = sender.port;
    ::sendto(static_cast<int>(m_handle), octets.data(), octets.size(), 0,
             reinterpret_cast<const sockaddr*>(&to), sizeof to);
}
