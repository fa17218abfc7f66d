#include "platform/CharacterSet.h"
#include "platform/Owned.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

namespace platform {
namespace {

using Converter = Owned<iconv_t, ::iconv_close>;

/// The octets of the character that the text begins with.
size_t FirstCharacter(std::string_view utf8) {
    constexpr auto isContinuation = [](char octet) { return (static_cast<uint8_t>(octet) & 0xC0) == 0x80; };
    const auto* next = std::find_if_not(utf8.begin() + 1, utf8.end(), isContinuation);
    return static_cast<size_t>(next - utf8.begin());
}

} // namespace

std::optional<std::string> ToLatin1(std::string_view utf8) {
    iconv_t opened = ::iconv_open("ISO-8859-1//TRANSLIT", "UTF-8");
    if (opened == reinterpret_cast<iconv_t>(-1))
        return {};
    const Converter converter(opened);
    std::string latin1;
    while (!utf8.empty()) {
        std::array<char, 1024> piece{};
        char* from = const_cast<char*>(utf8.data()); // read only, whatever its type says
        char* to = piece.data();
        size_t left = utf8.size();
        size_t room = piece.size();
        const bool stuck =
            ::iconv(converter.Get(), &from, &left, &to, &room) == static_cast<size_t>(-1) && errno != E2BIG;
        latin1.append(piece.data(), piece.size() - room);
        utf8.remove_prefix(utf8.size() - left);
        if (stuck && !utf8.empty()) {
            latin1 += '?';
            utf8.remove_prefix(FirstCharacter(utf8));
        }
    }
    return latin1;
}

} // namespace platform
