#pragma once

#include <string_view>

namespace platform {

/// Lets standard output take octets exactly as they are written, UTF-8 and terminal sequences among them.
void PrepareConsole();

/// Prints UTF-8 to where a window program's output goes: standard output, or the console that it was started
/// from. False when there is neither.
bool PrintText(std::string_view text);

} // namespace platform
