#include "platform/TcpConnection.h"

#include <algorithm>
#include <array>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How often it is looked for a stop while a socket rests.
constexpr milliseconds StopPeriod{50};

TcpOutcome Await(const TcpSocket& socket, TcpDirection direction, Deadline until,
                 const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        const auto left = std::chrono::ceil<milliseconds>(until - Clock::now());
        if (left.count() <= 0)
            return TcpOutcome::TimedOut;
        if (socket.Wait(direction, std::min(left, StopPeriod)))
            return TcpOutcome::Done;
    }
    return TcpOutcome::Stopped;
}

} // namespace

TcpOutcome TcpConnection::Connect(const std::string& host, uint16_t port, const Patience& patience,
                                  const std::stop_token& stop) {
    const auto addresses = AwaitOrLeave([host, port] { return TcpAddressesOf(host, port); }, stop,
                                        Clock::now() + patience.resolve);
    if (!addresses)
        return stop.stop_requested() ? TcpOutcome::Stopped : TcpOutcome::TimedOut;
    TcpOutcome outcome = TcpOutcome::NoSuchHost;
    const Deadline until = Clock::now() + patience.connect;
    for (size_t left = addresses->size(); left > 0 && outcome != TcpOutcome::Stopped; --left) {
        const Clock::time_point now = Clock::now();
        TcpSocket socket((*addresses)[addresses->size() - left]);
        outcome = Await(socket, TcpDirection::Writing, now + (until - now) / static_cast<int>(left), stop);
        if (outcome == TcpOutcome::Done && socket.IsConnected()) {
            m_socket = std::move(socket);
            return outcome;
        }
        if (outcome == TcpOutcome::Done)
            outcome = TcpOutcome::Broken;
    }
    return outcome;
}

TcpOutcome TcpConnection::Send(std::string_view octets, Deadline until, const std::stop_token& stop) const {
    while (!octets.empty()) {
        const TcpOutcome outcome = Await(m_socket, TcpDirection::Writing, until, stop);
        if (outcome != TcpOutcome::Done)
            return outcome;
        const auto sent = m_socket.Send(octets);
        if (!sent)
            return TcpOutcome::Broken;
        octets.remove_prefix(*sent);
    }
    return TcpOutcome::Done;
}

TcpOutcome TcpConnection::Receive(std::string& octets, Deadline until, const std::stop_token& stop) const {
    std::array<char, 4096> buffer{};
    while (true) {
        const TcpOutcome outcome = Await(m_socket, TcpDirection::Reading, until, stop);
        if (outcome != TcpOutcome::Done)
            return outcome;
        const auto received = m_socket.Receive(buffer.data(), buffer.size());
        if (!received)
            return TcpOutcome::Broken;
        octets.append(buffer.data(), *received);
        if (*received > 0)
            return TcpOutcome::Done;
    }
}

} // namespace platform
