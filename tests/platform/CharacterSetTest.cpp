#include "platform/CharacterSet.h"

#include <doctest/doctest.h>

TEST_CASE("text becomes iso-8859-1, and what that does not hold is replaced") {
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"'a~", "'a~"},
        {"caf\xC3\xA9 \xC3\xBF", "caf\xE9 \xFF"},
        {"1\xE6\x97\xA5"
         "2",
         "1?2"},
        {std::string(3000, 'x') + "\xC3\xA9", std::string(3000, 'x') + "\xE9"},
    };
    for (const auto& [utf8, latin1] : cases) {
        const auto converted = platform::ToLatin1(utf8);
        REQUIRE(converted);
        CHECK((*converted == latin1));
    }
}
