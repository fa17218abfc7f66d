#include "platform/TcpSocket.h"
#include "platform/windows/Sockets.h"
#include "platform/windows/WideText.h"

#include <ws2tcpip.h>

#include <algorithm>
#include <limits>
#include <memory>

namespace platform {
namespace {

struct ListFree {
    void operator()(ADDRINFOW* list) const { ::FreeAddrInfoW(list); }
};

SOCKET Native(intptr_t handle) {
    return static_cast<SOCKET>(handle);
}

int SizeOf(size_t size) {
    return static_cast<int>(std::min<size_t>(size, std::numeric_limits<int>::max()));
}

/// What a call that moves octets has brought, where nothing at all means the end.
std::optional<size_t> Moved(int count) {
    if (count >= 0)
        return static_cast<size_t>(count);
    return ::WSAGetLastError() == WSAEWOULDBLOCK ? std::optional<size_t>(0) : std::nullopt;
}

} // namespace

std::vector<TcpAddress> TcpAddressesOf(const std::string& host, uint16_t port) {
    if (!SocketsReady())
        return {};
    ADDRINFOW hints{};
    hints.ai_socktype = SOCK_STREAM;
    ADDRINFOW* found = nullptr;
    if (::GetAddrInfoW(Wide(host).c_str(), std::to_wstring(port).c_str(), &hints, &found) != 0)
        return {};
    const std::unique_ptr<ADDRINFOW, ListFree> list(found);
    std::vector<TcpAddress> addresses;
    for (const ADDRINFOW* each = list.get(); each; each = each->ai_next)
        addresses.push_back(
            {each->ai_family, {reinterpret_cast<const char*>(each->ai_addr), each->ai_addrlen}});
    return addresses;
}

TcpSocket::TcpSocket(const TcpAddress& address)
    : m_handle(static_cast<intptr_t>(::socket(address.family, SOCK_STREAM, IPPROTO_TCP))) {
    u_long nonBlocking = 1;
    ::ioctlsocket(Native(m_handle), static_cast<long>(FIONBIO), &nonBlocking);
    const auto* name = reinterpret_cast<const sockaddr*>(address.octets.data());
    const int begun = ::connect(Native(m_handle), name, SizeOf(address.octets.size()));
    if (m_handle >= 0 && begun != 0 && ::WSAGetLastError() != WSAEWOULDBLOCK)
        ::closesocket(Native(std::exchange(m_handle, -1)));
}

TcpSocket::~TcpSocket() {
    if (m_handle < 0)
        return;
    ::shutdown(Native(m_handle), SD_BOTH);
    ::closesocket(Native(m_handle));
}

bool TcpSocket::Wait(TcpDirection direction, std::chrono::milliseconds time) const {
    if (m_handle < 0)
        return true;
    fd_set watched;
    fd_set failed; // where a connect that is refused shows
    FD_ZERO(&watched);
    FD_ZERO(&failed);
    FD_SET(Native(m_handle), &watched);
    FD_SET(Native(m_handle), &failed);
    const bool reads = direction == TcpDirection::Reading;
    timeval wait{static_cast<long>(time.count() / 1000), static_cast<long>(time.count() % 1000 * 1000)};
    return ::select(0, reads ? &watched : nullptr, reads ? nullptr : &watched, &failed, &wait) > 0;
}

bool TcpSocket::IsConnected() const {
    int error = 0;
    int size = sizeof error;
    return m_handle >= 0 &&
           ::getsockopt(Native(m_handle), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size) ==
               0 &&
           error == 0;
}

std::optional<size_t> TcpSocket::Send(std::string_view octets) const {
    return Moved(::send(Native(m_handle), octets.data(), SizeOf(octets.size()), 0));
}

std::optional<size_t> TcpSocket::Receive(char* buffer, size_t size) const {
    const int count = ::recv(Native(m_handle), buffer, SizeOf(size), 0);
    return count == 0 ? std::nullopt : Moved(count);
}

} // namespace platform
