#pragma once

#include <stop_token>
#include <string_view>

namespace platform {

/// Lets standard output take octets exactly as they are written, UTF-8 and terminal sequences among them.
void PrepareConsole();

/// From now on a person who interrupts the program, or a system that ends it, stops the token and nothing
/// else; the second time the program ends at once. For a program that has to take back what it has begun.
std::stop_token StopOnInterrupt();

/// Prints UTF-8 to where a window program's output goes: standard output, or the console that it was started
/// from. False when there is neither.
bool PrintText(std::string_view text);

} // namespace platform
