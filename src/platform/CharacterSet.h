#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The text in iso-8859-1, by the system's converter; what that set does not hold is replaced as the system
/// does. None when the system has no such converter.
std::optional<std::string> ToLatin1(std::string_view utf8);

} // namespace platform
