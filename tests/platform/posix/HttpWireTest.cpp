#include "../HttpChecks.h"

#include <doctest/doctest.h>

#include <future>

using namespace std::chrono_literals;
using platform::HttpRequest;
using enum End;
using enum platform::HttpOutcome;

namespace {

HttpRequest Request(const std::string& verb, const std::string& target,
                    std::optional<std::string> body = {}) {
    HttpRequest request;
    request.host = "127.0.0.1";
    request.verb = verb;
    request.target = target;
    request.userAgent = "NextZEP Shell Extension";
    request.headers = {{"Depth", "1"}};
    request.refresh = true;
    request.body = std::move(body);
    return request;
}

} // namespace

TEST_CASE("the request goes out in exactly these octets") {
    const std::string value(65536, 'v');
    struct Case {
        HttpRequest request;
        std::string line;
        std::string rest; ///< what follows the refresh headers
    };
    const Case cases[] = {
        {Request("GET", "/profile/%d?PMCMethod=GetVdirList"), "GET /profile/%d?PMCMethod=GetVdirList",
         "\r\n"},
        {Request("GET", "/a/./../b c"), "GET /a/./../b%20c", "\r\n"},
        {Request("GET", "relative"), "GET /relative", "\r\n"},
        {Request("GET", "/x", std::string("abc\0", 4)), "GET /x",
         "Content-Length: 4\r\n\r\nabc" + std::string(1, '\0')},
        {Request("GET", "/x", ""), "GET /x", "\r\n"},
        {Request("PUT", "/settings/A?Value={1}"), "PUT /settings/A?Value=%7B1%7D",
         "Content-Length: 0\r\n\r\n"},
        {Request("PUT", "/settings/A?Value=" + value), "PUT /settings/A?Value=" + value,
         "Content-Length: 0\r\n\r\n"},
        {Request("PUT", "/x", std::string(3, '\n')), "PUT /x", "Content-Length: 3\r\n\r\n\n\n\n"},
        {Request("PROPFIND", "/resources"), "PROPFIND /resources", "\r\n"},
        {Request("MOVE", "/resources/a?Destination=/resources/b"),
         "MOVE /resources/a?Destination=/resources/b", "\r\n"},
        {Request("MKCOL", "/resources/ä"), "MKCOL /resources/%C3%A4", "\r\n"},
        {Request("DELETE", "/resources/#"), "DELETE /resources/%23", "\r\n"},
    };
    for (const Case& expected : cases) {
        CAPTURE(expected.line.substr(0, 60));
        std::string received;
        const RawServer server([&](Socket& connection) {
            received = RawServer::ReceiveRequest(connection);
            connection.Send(Ok + "Content-Length: 0\r\n\r\n");
        });
        HttpRequest request = expected.request;
        request.port = server.Port();
        CHECK(platform::SendHttp(request).status == 200);
        CHECK(received == expected.line + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.Port()) +
                              "\r\nUser-Agent: NextZEP Shell Extension\r\nDepth: 1\r\n"
                              "Pragma: no-cache\r\nCache-Control: no-cache\r\n" +
                              expected.rest);
    }
}

TEST_CASE("without the refresh flag and headers nothing but host and agent is said") {
    std::string received;
    const RawServer server([&](Socket& connection) {
        received = RawServer::ReceiveRequest(connection);
        connection.Send(Ok + "Content-Length: 0\r\n\r\n");
    });
    HttpRequest request = Request("HEAD", "/");
    request.port = server.Port();
    request.refresh = false;
    request.headers = {{"Empty", ""}};
    CHECK(platform::SendHttp(request).complete);
    CHECK(received == "HEAD / HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server.Port()) +
                          "\r\nUser-Agent: NextZEP Shell Extension\r\nEmpty:\r\n\r\n");
}

TEST_CASE("connecting to a server that takes no connection ends by time or by a stop request") {
    // Once a queue without places is full, the system leaves further calls unanswered.
    const Socket listener = Socket::Listening(0);
    const Socket queued = Socket::Connected(listener.Port());
    HttpRequest request = Request("GET", "/");
    request.port = listener.Port();
    request.timeouts.connect = 300ms;
    CHECK(platform::SendHttp(request).outcome == TimedOut);

    request.timeouts.connect = 60s;
    std::stop_source stop;
    auto response =
        std::async(std::launch::async, [&] { return platform::SendHttp(request, stop.get_token()); });
    CHECK(response.wait_for(100ms) == std::future_status::timeout);
    stop.request_stop();
    CHECK(response.wait_for(1s) == std::future_status::ready);
    CHECK(response.get().outcome == Cancelled);
}

TEST_CASE("a faulty head or chunk is noticed, an interim answer passed over") {
    const AnswerCase cases[] = {
        {"interim", "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 1\r\n\r\nx", Open,
         Answered, 200, true, "x"},
        {"interim and no more", "HTTP/1.1 100 Continue\r\n\r\n", Fin, Unreachable, 0, false, ""},
        {"chunks cut by FIN", Ok + "Transfer-Encoding: chunked\r\n\r\n2\r\nab\r\n", Fin, Answered, 200, false,
         "ab"},
        {"broken chunks", Ok + "Transfer-Encoding: chunked\r\n\r\n2\r\nab\r\nzz\r\n", Open, Answered, 200,
         false, "ab"},
        {"cut in the headers", Ok + "Content-Len", Fin, Unreachable, 0, false, ""},
    };
    CheckAnswers(cases);
}

TEST_CASE("a dripping head is not silence") {
    const AnswerCase cases[] = {
        {"dripping head", Ok + "Content-Leng", Open, Answered, 200, true, "x", "th: 1\r\n\r\nx"},
    };
    CheckAnswers(cases, 900ms);
}
