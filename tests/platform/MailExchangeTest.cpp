#include "platform/MailExchange.h"
#include "Socket.h"

#include <doctest/doctest.h>

#include <chrono>
#include <future>
#include <sstream>
#include <thread>

using namespace std::chrono_literals;
using platform::FindMailExchangers;
using platform::MailExchangers;
using platform::NameServer;

namespace {

std::string Word(int value) {
    return {static_cast<char>(value >> 8), static_cast<char>(value & 255)};
}

std::string Name(const std::string& dotted) {
    std::string labels;
    std::istringstream parts(dotted);
    for (std::string part; std::getline(parts, part, '.');)
        labels += static_cast<char>(part.size()) + part;
    return labels + std::string(1, '\0');
}

struct Record {
    int type;
    std::string data;
};

constexpr int Cname = 5;
constexpr int Mx = 15;

constexpr int NameAsked = 0xC00C; ///< points to the name in the question

/// A host below the domain that was asked for.
Record Exchange(int preference, const std::string& label) {
    return {Mx, Word(preference) + static_cast<char>(label.size()) + label + Word(NameAsked)};
}

/// The answer to a question: these records, all of the name that was asked for.
std::string Answer(const std::string& question, int code, const std::vector<Record>& records) {
    constexpr int classIn = 1;
    const std::string asked = question.substr(12, question.find('\0', 12) + 5 - 12);
    std::string answer = question.substr(0, 2) + Word(0x8180 | code) + Word(1) +
                         Word(static_cast<int>(records.size())) + Word(0) + Word(0) + asked;
    for (const Record& record : records)
        answer += Word(NameAsked) + Word(record.type) + Word(classIn) + Word(0) + Word(60) +
                  Word(static_cast<int>(record.data.size())) + record.data;
    return answer;
}

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
    const std::string lies[] = {std::string("\0\0\0", 3), std::string("\0\x01\x3Fhost", 7),
                                std::string("\0\x01\xC0\xFF", 4), std::string("\0", 1)};
    for (const std::string& data : lies) {
        const MailExchangers hosts = Ask([&](const std::string& question) {
            return Answer(question, 0, {{Mx, data}});
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
