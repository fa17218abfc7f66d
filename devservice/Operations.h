#pragma once

// Each of our contexts is run by one thread, and the thread sanitizer does not know fences.
#define BOOST_ASIO_DISABLE_FENCED_BLOCK
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>

#include <chrono>
#include <functional>
#include <stop_token>

namespace devservice {

namespace asio = boost::asio;
using boost::system::error_code;
using tcp = asio::ip::tcp;

/// Runs asynchronous operations one after the other as if they blocked, until a stop is requested.
class Operations {
public:
    explicit Operations(std::stop_token stop)
        : m_stop(std::move(stop)), m_onStop(m_stop, [this] { m_context.stop(); }) {}

    asio::io_context& Context() { return m_context; }

    /// `begin` starts the operation with the handler it is given. False when it failed or was stopped.
    template <typename Begin>
    bool Await(Begin begin) {
        error_code result = asio::error::operation_aborted;
        m_context.restart();
        if (m_stop.stop_requested()) // a stop after this ends run(), one before it was undone by restart()
            return false;
        begin([&result](const error_code& error, auto&&...) { result = error; });
        m_context.run();
        return !result;
    }

    /// False when stopped before the time was over; a negative time is for ever.
    bool Sleep(std::chrono::milliseconds time) {
        asio::steady_timer timer(m_context, time < time.zero() ? std::chrono::hours(24 * 365) : time);
        return Await([&](auto done) { timer.async_wait(done); });
    }

private:
    asio::io_context m_context;
    std::stop_token m_stop;
    std::stop_callback<std::function<void()>> m_onStop;
};

} // namespace devservice
