#include "../RawServer.h"
#include "platform/HttpTransport.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <sstream>
#include <vector>

using platform::HttpRequest;

namespace {

/// The head's lines but the one on the connection's life, the first line first and the others sorted: the
/// system's client has an order of its own.
std::vector<std::string> HeadLines(const std::string& request) {
    std::istringstream head(request.substr(0, request.find("\r\n\r\n") + 2));
    std::vector<std::string> lines;
    for (std::string line; std::getline(head, line);) {
        if (!line.starts_with("Connection: "))
            lines.push_back(line.substr(0, line.size() - 1));
    }
    std::sort(lines.begin() + 1, lines.end());
    return lines;
}

} // namespace

TEST_CASE("the request says no more than it should") {
    struct Case {
        const char* verb;
        const char* target;
        std::optional<std::string> body;
        std::string line;
        std::string length; ///< the Content-Length line
    };
    const Case cases[] = {
        {"GET",
         "/profile/%d?PMCMethod=GetVdirList",
         {},
         "GET /profile/%d?PMCMethod=GetVdirList HTTP/1.1",
         ""},
        {"GET", "/a/./../b c", {}, "GET /a/./../b%20c HTTP/1.1", ""},
        {"GET", "/x", std::string("abc\0", 4), "GET /x HTTP/1.1", "Content-Length: 4"},
        {"PUT", "/settings/A?Value={1}", {}, "PUT /settings/A?Value=%7B1%7D HTTP/1.1", "Content-Length: 0"},
        {"PROPFIND", "/resources", {}, "PROPFIND /resources HTTP/1.1", ""},
        {"MOVE", "/resources/\xC3\xA4", {}, "MOVE /resources/%C3%A4 HTTP/1.1", ""},
    };
    for (const Case& expected : cases) {
        CAPTURE(expected.line);
        std::string received;
        const RawServer server([&](Socket& connection) {
            received = RawServer::ReceiveRequest(connection);
            connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
        });
        HttpRequest request;
        request.host = "127.0.0.1";
        request.port = server.Port();
        request.verb = expected.verb;
        request.target = expected.target;
        request.userAgent = "NextZEP Shell Extension";
        request.headers = {{"Depth", "1"}};
        request.refresh = true;
        request.body = expected.body;
        CHECK(platform::SendHttp(request).status == 200);
        std::vector<std::string> lines = {
            expected.line,      "Cache-Control: no-cache",
            "Depth: 1",         "Host: 127.0.0.1:" + std::to_string(server.Port()),
            "Pragma: no-cache", "User-Agent: NextZEP Shell Extension"};
        if (!expected.length.empty())
            lines.insert(lines.begin() + 2, expected.length);
        CHECK((HeadLines(received) == lines));
        INFO(received);
        CHECK(received.ends_with("\r\n\r\n" + expected.body.value_or("")));
    }
}
