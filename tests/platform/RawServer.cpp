#include "RawServer.h"

#include <string_view>

RawServer::RawServer(Script script) : m_script(std::move(script)), m_thread([this] { Serve(); }) {}

RawServer::~RawServer() {
    m_ends = true;
    const Socket wake = Socket::Connected(m_port);
    m_thread.join();
}

void RawServer::Serve() {
    while (true) {
        Socket connection = m_listener.Accept();
        if (m_ends)
            return;
        ++m_connections;
        m_script(connection);
        m_served.push_back(std::move(connection));
    }
}

std::string RawServer::ReceiveRequest(const Socket& connection) {
    static constexpr std::string_view field = "\r\nContent-Length: ";
    std::string request;
    size_t wanted = std::string::npos;
    while (request.size() < wanted) {
        const std::string more = connection.Receive();
        if (more.empty())
            break;
        request += more;
        const size_t head = request.find("\r\n\r\n");
        if (wanted != std::string::npos || head == std::string::npos)
            continue;
        const size_t length = request.substr(0, head).find(field);
        wanted = head + 4;
        if (length != std::string::npos)
            wanted += std::stoul(request.substr(length + field.size()));
    }
    return request;
}
