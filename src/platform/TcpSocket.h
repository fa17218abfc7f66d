#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform {

/// An address of a host, as the system's calls take it.
struct TcpAddress {
    int family = 0;
    std::string octets;
};

/// The addresses of a host, in the order in which the system wants them to be tried; none when it has none.
/// Blocks for as long as the system asks around.
std::vector<TcpAddress> TcpAddressesOf(const std::string& host, uint16_t port);

enum class TcpDirection { Reading, Writing };

/// A socket of the system that never blocks.
class TcpSocket {
public:
    TcpSocket() = default;
    /// Begins to connect; the socket can be written to when that has ended.
    explicit TcpSocket(const TcpAddress& address);
    TcpSocket(TcpSocket&& other) noexcept : m_handle(std::exchange(other.m_handle, -1)) {}
    TcpSocket& operator=(TcpSocket&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~TcpSocket(); ///< tells the other side the end, then closes

    /// Waits that long for what can be read, or for room to write, or for a fault; false when none has come.
    bool Wait(TcpDirection direction, std::chrono::milliseconds time) const;
    /// Once it can be written to: whether it is connected.
    bool IsConnected() const;
    /// How many octets were moved: 0 when none can be now, none when the connection has ended.
    std::optional<size_t> Send(std::string_view octets) const;
    std::optional<size_t> Receive(char* buffer, size_t size) const;

private:
    intptr_t m_handle = -1;
};

} // namespace platform
