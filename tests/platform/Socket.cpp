#include "Socket.h"
#include "NativeSocket.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace {

sockaddr_in Address(uint32_t host, uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = port;
    address.sin_addr.s_addr = host;
    return address;
}

sockaddr_in Loopback(uint16_t port) {
    return Address(htonl(INADDR_LOOPBACK), htons(port));
}

/// A handle of the system's or a result of its calls; negative ones tell a failure.
template <typename Result>
intptr_t Checked(Result result) {
    const auto checked = static_cast<intptr_t>(result);
    if (checked < 0)
        throw std::runtime_error("a socket of the test failed");
    return checked;
}

NativeSocket Native(intptr_t handle) {
    return static_cast<NativeSocket>(handle);
}

intptr_t Bound(int type) {
    const intptr_t handle = Checked(OpenSocket(type));
    const sockaddr_in address = Loopback(0);
    Checked(::bind(Native(handle), reinterpret_cast<const sockaddr*>(&address), sizeof address));
    return handle;
}

template <typename Value>
int SetOption(intptr_t handle, int option, const Value& value) {
    return ::setsockopt(Native(handle), SOL_SOCKET, option, reinterpret_cast<const char*>(&value),
                        sizeof value);
}

} // namespace

Socket Socket::Listening(int backlog) {
    Socket socket(Bound(SOCK_STREAM));
    Checked(::listen(Native(socket.m_handle), backlog));
    return socket;
}

Socket Socket::Connected(uint16_t port) {
    Socket socket(Checked(OpenSocket(SOCK_STREAM)));
    const sockaddr_in address = Loopback(port);
    Checked(::connect(Native(socket.m_handle), reinterpret_cast<const sockaddr*>(&address), sizeof address));
    return socket;
}

Socket Socket::Datagrams() {
    Socket socket(Bound(SOCK_DGRAM));
    Checked(SetOption(socket.m_handle, SO_RCVTIMEO, TenSeconds));
    return socket;
}

Socket::Socket(Socket&& other) noexcept : m_handle(std::exchange(other.m_handle, -1)) {}

Socket& Socket::operator=(Socket&& other) noexcept {
    std::swap(m_handle, other.m_handle);
    return *this;
}

Socket::~Socket() {
    if (m_handle >= 0)
        CloseSocket(Native(m_handle));
}

uint16_t Socket::Port() const {
    sockaddr_in address{};
    AddressSize size = sizeof address;
    Checked(::getsockname(Native(m_handle), reinterpret_cast<sockaddr*>(&address), &size));
    return ntohs(address.sin_port);
}

Socket Socket::Accept() const {
    return Socket(Checked(AcceptFrom(Native(m_handle))));
}

std::string Socket::Receive() const {
    std::array<char, 65536> octets{};
    const auto count = ::recv(Native(m_handle), octets.data(), octets.size(), 0);
    return {octets.data(), count > 0 ? static_cast<size_t>(count) : 0};
}

bool Socket::Send(std::string_view octets) const {
    while (!octets.empty()) {
        const auto count =
            ::send(Native(m_handle), octets.data(), static_cast<int>(octets.size()), SendFlags);
        if (count <= 0)
            return false;
        octets.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

void Socket::EndSending() const {
    ::shutdown(Native(m_handle), EndOfSending);
}

void Socket::Reset() {
    SetOption(m_handle, SO_LINGER, linger{1, 0});
    CloseSocket(Native(std::exchange(m_handle, -1)));
}

std::string Socket::ReceiveFrom(Sender& sender) const {
    std::array<char, 4096> octets{};
    sockaddr_in from{};
    AddressSize size = sizeof from;
    const auto count = ::recvfrom(Native(m_handle), octets.data(), octets.size(), 0,
                                  reinterpret_cast<sockaddr*>(&from), &size);
    sender = {static_cast<uint32_t>(from.sin_addr.s_addr), from.sin_port};
    return {octets.data(), count > 0 ? static_cast<size_t>(count) : 0};
}

void Socket::SendTo(const Sender& sender, std::string_view octets) const {
    const sockaddr_in to = Address(sender.address, sender.port);
    ::sendto(Native(m_handle), octets.data(), static_cast<int>(octets.size()), 0,
             reinterpret_cast<const sockaddr*>(&to), sizeof to);
}
