#include "platform/posix/MailAnswer.h"
#include "../NameAnswers.h"

#include <doctest/doctest.h>

using namespace names;

TEST_CASE("each beginning of an answer gives the hosts that are whole in it") {
    const std::string question = Word(7) + Word(0x0100) + Word(1) + Word(0) + Word(0) + Word(0) +
                                 Name("example.org") + Word(Mx) + Word(1);
    const std::string answer = Answer(question, 0, {Exchange(1, "a"), {Cname, Name("x")}, Exchange(2, "b")});
    const std::vector<std::string> all{"a.example.org", "b.example.org"};
    for (size_t size = 0; size <= answer.size(); ++size) {
        const std::vector<unsigned char> octets(answer.begin(),
                                                answer.begin() + static_cast<std::ptrdiff_t>(size));
        const auto hosts = platform::ExchangersIn(octets).value_or(std::vector<std::string>());
        REQUIRE(hosts.size() <= all.size());
        CHECK(std::equal(hosts.begin(), hosts.end(), all.begin()));
        CHECK((size < answer.size() || hosts == all));
    }
}
