#include "HttpChecks.h"

#include <doctest/doctest.h>

platform::HttpRequest Get(uint16_t port, const std::string& target) {
    platform::HttpRequest request;
    request.host = "127.0.0.1";
    request.port = port;
    request.verb = "GET";
    request.target = target;
    request.userAgent = "Tester";
    return request;
}

RawServer::Script Answering(const std::string& octets, End end, const std::string& dripping) {
    return [=](Socket& connection) {
        RawServer::ReceiveRequest(connection);
        connection.Send(octets);
        for (const char octet : dripping) {
            std::this_thread::sleep_for(std::chrono::milliseconds(120));
            connection.Send(std::string(1, octet));
        }
        if (end == End::Reset)
            connection.Reset();
        else if (end == End::Fin)
            connection.EndSending();
    };
}

void CheckAnswers(std::span<const AnswerCase> cases, std::chrono::milliseconds receive) {
    for (const AnswerCase& expected : cases) {
        CAPTURE(expected.name);
        const RawServer server(Answering(expected.answer, expected.end, expected.dripping));
        platform::HttpRequest request = Get(server.Port());
        request.timeouts.receive = receive;
        const platform::HttpResponse response = platform::SendHttp(request);
        CHECK(response.outcome == expected.outcome);
        CHECK(response.status == expected.status);
        CHECK(response.body == expected.body);
        CHECK(response.complete == expected.complete);
        CHECK(server.Connections() == 1);
    }
}
