#include "platform/MailExchange.h"
#include "NameAnswers.h"
#include "Socket.h"

#include <doctest/doctest.h>

#include <chrono>
#include <future>
#include <thread>

using namespace names;
using namespace std::chrono_literals;
using platform::FindMailExchangers;
using platform::MailExchangers;
using platform::NameServer;

namespace {

/// Asks a server that answers the first question.
template <typename Reply>
MailExchangers Ask(Reply reply) {
    const Socket socket = Socket::Datagrams();
    const std::jthread responder([&] { socket.AnswerDatagram(reply); });
    return FindMailExchangers("example.org", NameServer{"127.0.0.1", socket.Port()});
}

} // namespace

TEST_CASE("mail exchangers come in the order of the answer") {
    struct Case {
        std::string name;
        int code;
        std::vector<Record> records;
        MailExchangers hosts;
    };
    const Case cases[] = {
        {"one", 0, {Exchange(10, "mx")}, {{"mx.example.org"}}},
        {"unsorted",
         0,
         {Exchange(30, "c"), Exchange(10, "a"), Exchange(20, "b")},
         {{"c.example.org", "a.example.org", "b.example.org"}}},
        {"beside others", 0, {{Cname, "\1x" + Word(NameAsked)}, Exchange(1, "mx")}, {{"mx.example.org"}}},
        {"no such domain", 3, {}, {}},
        {"nothing of the kind", 0, {}, {}},
        {"behind an alias of its own",
         0,
         {{Cname, Name("a.example.org")}, {Mx, Word(1) + Name("mx.example.net")}},
         {{"mx.example.net"}}},
        {"the one that says that there is none",
         0,
         {{Mx, Word(0) + Name("")}},
         MailExchangers(std::in_place)},
        {"nearly 64 KB", 0, std::vector<Record>(3600, Exchange(1, "m")),
         std::vector<std::string>(3600, "m.example.org")},
    };
    for (const Case& expected : cases) {
        CAPTURE(expected.name);
        const MailExchangers hosts = Ask(
            [&](const std::string& question) { return Answer(question, expected.code, expected.records); });
        REQUIRE(hosts.has_value() == expected.hosts.has_value());
        if (hosts)
            CHECK((*hosts == *expected.hosts));
    }
}

TEST_CASE("the question is for the mail exchangers of exactly this domain") {
    std::string asked;
    Ask([&](const std::string& question) {
        asked = question.substr(12, Name("example.org").size() + 4);
        return Answer(question, 3, {});
    });
    CHECK((asked == Name("example.org") + Word(Mx) + Word(1)));
}

TEST_CASE("records without a host, or with a wrong size, give no host and no crash") {
    // The answer's only record holds them 43 octets behind its beginning; the last two lead back to
    // themselves.
    const std::string lies[] = {std::string("\0\0\0", 3),         std::string("\0\x01\x3Fhost", 7),
                                std::string("\0\x01\xC0\xFF", 4), std::string("\0", 1),
                                std::string("\0\x01\xC0\x2B", 4), std::string("\0\x01\x01m\xC0\x2B", 6)};
    for (const std::string& data : lies) {
        const MailExchangers hosts = Ask([&](const std::string& question) {
            return Answer(question, 0, {{Mx, data}});
        });
        CHECK((!hosts || hosts->empty()));
    }
}

TEST_CASE("an answer that is cut gives no more hosts than came") {
    for (const size_t size : {29u, 31u, 41u, 45u}) {
        const MailExchangers hosts = Ask([&](const std::string& question) {
            return Answer(question, 0, {Exchange(1, "mx")}).substr(0, size);
        });
        CHECK((!hosts || hosts->empty()));
    }
}

TEST_CASE("a query without answer ends with the stop request") {
    const Socket silent = Socket::Datagrams();
    std::stop_source stop;
    auto hosts = std::async(std::launch::async, [&] {
        return FindMailExchangers("example.org", NameServer{"127.0.0.1", silent.Port()}, stop.get_token());
    });
    CHECK(silent.AnswerDatagram([](const std::string&) { return std::string(); }));
    stop.request_stop();
    CHECK(hosts.wait_for(1s) == std::future_status::ready);
    CHECK_FALSE(hosts.get());
    CHECK_FALSE(FindMailExchangers("example.org", NameServer{"not an address", 53}));
}
