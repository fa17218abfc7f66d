#pragma once

namespace platform {

/// Lets standard output take octets exactly as they are written, UTF-8 and terminal sequences among them.
void PrepareConsole();

} // namespace platform
