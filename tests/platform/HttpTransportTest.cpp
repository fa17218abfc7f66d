#include "platform/HttpTransport.h"
#include "HttpChecks.h"
#include "Surroundings.h"

#include <doctest/doctest.h>

#include <future>

using namespace std::chrono_literals;
using platform::HttpRequest;
using platform::HttpResponse;
using platform::SendHttp;
using enum End;
using enum platform::HttpOutcome;

TEST_CASE("octets that no request line can hold are escaped, and no others") {
    for (int octet = 0; octet < 256; ++octet) {
        const char c = static_cast<char>(octet);
        const bool unsafe =
            octet <= 32 || octet >= 127 || std::string("\"#<>[\\]^{|}`").find(c) != std::string::npos;
        CAPTURE(octet);
        CHECK(platform::EscapeTarget(std::string(1, c)).size() == (unsafe ? 3 : 1));
    }
    const std::pair<const char*, const char*> cases[] = {
        {"/profile/%d?PMCMethod=GetVdirList", "/profile/%d?PMCMethod=GetVdirList"},
        {"/schedule/startnow?{0A-1}", "/schedule/startnow?%7B0A-1%7D"},
        {"/settings/A?Value=one\ntwo\tx", "/settings/A?Value=one%0Atwo%09x"},
        {"/resources/ä/../~'&+%20", "/resources/%C3%A4/../~'&+%20"},
        {"", ""},
    };
    for (const auto& [target, escaped] : cases)
        CHECK(platform::EscapeTarget(target) == escaped);
}

TEST_CASE("an answer is told as it came, and as how it ended") {
    const std::string zeros("a\0b\0", 4);
    const AnswerCase cases[] = {
        {"length", Ok + "Content-Length: 4\r\n\r\n" + zeros, Open, Answered, 200, true, zeros},
        {"no body", Ok + "Content-Length: 0\r\n\r\n", Open, Answered, 200, true, ""},
        {"other status", "HTTP/1.1 207 Multi\r\nContent-Length: 1\r\n\r\nx", Open, Answered, 207, true, "x"},
        {"no content", "HTTP/1.1 204 No Content\r\n\r\n", Open, Answered, 204, true, ""},
        {"old version", "HTTP/1.0 200 OK\r\n\r\nrest", Fin, Answered, 200, true, "rest"},
        {"to the end", Ok + "\r\nrest", Fin, Answered, 200, true, "rest"},
        {"chunks", Ok + "Transfer-Encoding: chunked\r\n\r\n2\r\nab\r\n1\r\nc\r\n0\r\n\r\n", Open, Answered,
         200, true, "abc"},
        {"redirection", "HTTP/1.1 302 Found\r\nLocation: /other\r\nContent-Length: 1\r\n\r\nx", Open,
         Answered, 302, true, "x"},
        {"asks for a name",
         "HTTP/1.1 401 Who\r\nWWW-Authenticate: Basic realm=x\r\nContent-Length: 1\r\n\r\nx", Open, Answered,
         401, true, "x"},
        {"encoded", Ok + "Content-Encoding: gzip\r\nContent-Length: 3\r\n\r\nraw", Open, Answered, 200, true,
         "raw"},
        {"cut by FIN", Ok + "Content-Length: 9\r\n\r\nhalf", Fin, Answered, 200, false, "half"},
        {"cut before the body", Ok + "Content-Length: 9\r\n\r\n", Fin, Answered, 200, false, ""},
        {"no word", "", Fin, Unreachable, 0, false, ""},
        {"reset", "", Reset, Unreachable, 0, false, ""},
        {"no HTTP", "hello, who are you\r\n\r\n", Fin, Unreachable, 0, false, ""},
        {"noise", std::string("\0\x01\xFF\x80\r\n\r\n", 8), Fin, Unreachable, 0, false, ""},
    };
    CheckAnswers(cases);
}

TEST_CASE("a reset in the body leaves an answer that is not whole") {
    const RawServer server([&](Socket& connection) {
        RawServer::ReceiveRequest(connection);
        connection.Send(Ok + "Content-Length: 1000000\r\n\r\n" + std::string(1000, 'x'));
        connection.Reset();
    });
    const HttpResponse response = SendHttp(Get(server.Port()));
    if (response.outcome == Answered) // a reset may overtake the octets before it
        CHECK_FALSE(response.complete);
    else
        CHECK(response.outcome == Unreachable);
}

TEST_CASE("silence ends a request, dripping does not") {
    const std::string head = Ok + "Content-Length: 8\r\n\r\n";
    const AnswerCase cases[] = {
        {"no answer", "", Open, TimedOut, 0, false, ""},
        {"half a header", Ok + "Conte", Open, TimedOut, 0, false, ""},
        {"half a body", head + "half", Open, Answered, 200, false, "half"},
        {"dripping body", head, Open, Answered, 200, true, "12345678", "12345678"},
    };
    CheckAnswers(cases, 900ms);
}

TEST_CASE("the silence of a server that does not read is the sending one") {
    std::promise<void> done;
    const RawServer server([&](Socket&) { done.get_future().wait(); });
    HttpRequest request = Get(server.Port());
    request.body = std::string(size_t{64} << 20, 'x');
    request.timeouts.send = 300ms;
    CHECK(SendHttp(request).outcome == TimedOut);
    done.set_value();
}

TEST_CASE("large bodies arrive whole in both directions") {
    std::string octets(size_t{8} << 20, '\0');
    for (size_t i = 0; i < octets.size(); ++i)
        octets[i] = static_cast<char>(i * 31 >> 3);
    std::string received;
    const RawServer server([&](Socket& connection) {
        received = RawServer::ReceiveRequest(connection);
        connection.Send(Ok + "Content-Length: " + std::to_string(octets.size()) + "\r\n\r\n" + octets);
    });
    HttpRequest request = Get(server.Port());
    request.body = octets;
    const HttpResponse response = SendHttp(request);
    CHECK(response.complete);
    CHECK((response.body == octets));
    CHECK(received.ends_with(octets));
}

TEST_CASE("an answer holds what its request allows and no more, whatever it announces") {
    constexpr size_t Bound = 100'000;
    struct Case {
        std::string head;
        size_t octets; ///< Endless: until the client has gone
        size_t read;
        bool complete;
    };
    constexpr size_t Endless = SIZE_MAX;
    const std::string huge = "Content-Length: " + std::to_string(uint64_t{1} << 40) + "\r\n";
    const Case cases[] = {
        {"Content-Length: 100000\r\n", Bound, Bound, true},
        {"Content-Length: 100001\r\n", Bound + 1, Bound, false},
        {"", Bound, Bound, true},
        {"", Endless, Bound, false},
        {huge, Endless, Bound, false},
        {huge, 10, 10, false},
    };
    for (const Case& expected : cases) {
        CAPTURE(expected.head);
        CAPTURE(expected.octets);
        const RawServer server([&expected](Socket& connection) {
            RawServer::ReceiveRequest(connection);
            bool taken = connection.Send(Ok + expected.head + "\r\n");
            for (size_t left = expected.octets; taken && left > 0;) {
                const size_t count = std::min<size_t>(left, 8192);
                taken = connection.Send(std::string(count, 'x'));
                left -= expected.octets == Endless ? 0 : count;
            }
            connection.EndSending();
        });
        HttpRequest request = Get(server.Port());
        request.maxBody = Bound;
        const HttpResponse response = SendHttp(request);
        CHECK(response.outcome == Answered);
        CHECK(response.body.size() == expected.read);
        CHECK(response.body.capacity() < (size_t{4} << 20));
        CHECK(response.complete == expected.complete);
    }
}

TEST_CASE("nobody there, proxies of the environment, requests that are no HTTP") {
    const uint16_t closed = Socket::Listening().Port();
    CHECK(SendHttp(Get(closed)).outcome == Unreachable);

    const RawServer server(Answering(Ok + "Content-Length: 0\r\n\r\n", Open));
    const VariableSet proxy("http_proxy", "http://127.0.0.1:" + std::to_string(closed));
    const VariableSet all("ALL_PROXY", "http://127.0.0.1:" + std::to_string(closed));
    CHECK(SendHttp(Get(server.Port())).status == 200);

    HttpRequest verb = Get(server.Port());
    verb.verb = "GET / HTTP/1.1\r\nX: y\r\n\r\nGET";
    HttpRequest header = Get(server.Port());
    header.headers = {{"Depth", "1\r\nX: y"}};
    HttpRequest agent = Get(server.Port());
    agent.userAgent = "a\nb";
    for (const HttpRequest& request : {verb, header, agent})
        CHECK(SendHttp(request).outcome == Unreachable);
    CHECK(server.Connections() == 1);
}

TEST_CASE("a stop request frees the call at every stage") {
    struct Case {
        std::string name;
        bool reads;
        std::string answer;
        size_t body;
    };
    const Case cases[] = {
        {"sending", false, "", size_t{64} << 20},
        {"waiting", true, "", 0},
        {"in the headers", true, Ok, 0},
        {"in the body", true, Ok + "Content-Length: 9\r\n\r\nhalf", 0},
    };
    for (const Case& stage : cases) {
        CAPTURE(stage.name);
        std::promise<void> reached;
        std::promise<void> done;
        const RawServer server([&](Socket& connection) {
            if (stage.reads)
                RawServer::ReceiveRequest(connection);
            connection.Send(stage.answer);
            reached.set_value();
            done.get_future().wait();
        });
        HttpRequest request = Get(server.Port());
        if (stage.body > 0)
            request.body = std::string(stage.body, 'x');
        std::stop_source stop;
        auto response = std::async(std::launch::async, [&] { return SendHttp(request, stop.get_token()); });
        reached.get_future().wait();
        stop.request_stop();
        CHECK(response.wait_for(1s) == std::future_status::ready);
        CHECK(response.get().outcome == Cancelled);
        done.set_value();
    }
}

TEST_CASE("a call that is stopped before it begins sends nothing") {
    const RawServer server(Answering(""));
    std::stop_source stop;
    stop.request_stop();
    CHECK(SendHttp(Get(server.Port()), stop.get_token()).outcome == Cancelled);
    CHECK(server.Connections() == 0);
}

TEST_CASE("calls of several threads do not disturb each other") {
    std::vector<std::future<bool>> calls;
    calls.reserve(16);
    const RawServer server([](Socket& connection) {
        const std::string request = RawServer::ReceiveRequest(connection);
        const std::string path = request.substr(4, request.find(' ', 4) - 4);
        connection.Send(Ok + "Connection: close\r\nContent-Length: " + std::to_string(path.size()) +
                        "\r\n\r\n" + path);
    });
    for (int call = 0; call < 16; ++call)
        calls.push_back(std::async(std::launch::async, [&server, call] {
            const std::string path = "/" + std::to_string(call);
            return SendHttp(Get(server.Port(), path)).body == path;
        }));
    for (auto& call : calls)
        CHECK(call.get());
}
