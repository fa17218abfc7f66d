#pragma once

#include "Socket.h"

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

/// A server that knows no HTTP: every connection is handed to the test's own script, and stays open after
/// that for as long as the server lives.
class RawServer {
public:
    using Script = std::function<void(Socket&)>;

    explicit RawServer(Script script);
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;
    ~RawServer();

    uint16_t Port() const { return m_port; }
    int Connections() const { return m_connections; }

    /// Reads a request: head, and as many octets of body as it states.
    static std::string ReceiveRequest(const Socket& connection);

private:
    void Serve();

    Script m_script;
    Socket m_listener = Socket::Listening();
    uint16_t m_port = m_listener.Port();
    std::vector<Socket> m_served;
    std::atomic<bool> m_ends = false;
    std::atomic<int> m_connections = 0;
    std::thread m_thread;
};
