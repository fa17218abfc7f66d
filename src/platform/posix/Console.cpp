#include "platform/Console.h"

#include <cstdio>

namespace platform {

void PrepareConsole() {} // the system changes nothing on its own

bool PrintText(std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

} // namespace platform
