#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// Conversions between UTF-8 and the system's wide text; what is malformed becomes U+FFFD.
std::wstring Wide(std::string_view utf8);
std::string Narrow(std::wstring_view wide);

/// The arguments as one command line, quoted so that a program splits them into the same ones.
std::wstring CommandLine(const std::vector<std::string>& arguments);

} // namespace platform
