#pragma once

#include "platform/AwaitOrLeave.h"
#include "platform/TcpSocket.h"

#include <chrono>
#include <cstdint>
#include <stop_token>
#include <string>
#include <string_view>

namespace platform {

/// How a step on a connection went. `Broken` is refused, reset, or ended by the other side.
enum class TcpOutcome { Done, NoSuchHost, Broken, TimedOut, Stopped };

/// A TCP connection. Each step blocks the calling thread until it is done, its time is over or, within a
/// tenth of a second, a stop is requested. One thread at a time.
class TcpConnection {
public:
    struct Patience {
        std::chrono::milliseconds resolve{30'000};
        std::chrono::milliseconds connect{10'000}; ///< shared by the addresses of a host that has several
    };

    /// Connects to the first address of the host, a name or a numeric address, that accepts.
    TcpOutcome Connect(const std::string& host, uint16_t port, const Patience& patience,
                       const std::stop_token& stop);
    /// Sends all of the octets.
    TcpOutcome Send(std::string_view octets, Deadline until, const std::stop_token& stop) const;
    /// Appends what comes next, a few kilobytes at most.
    TcpOutcome Receive(std::string& octets, Deadline until, const std::stop_token& stop) const;

private:
    TcpSocket m_socket;
};

} // namespace platform
