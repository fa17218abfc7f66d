#include "platform/Console.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <functional>
#include <thread>

namespace platform {
namespace {

std::array<int, 2> interrupts{-1,
                              -1}; ///< a pipe: what is written to the one end wakes who waits at the other

void NoteInterrupt(int) {
    const int error = errno;
    const char octet = 0;
    static_cast<void>(!write(interrupts[1], &octet, 1));
    errno = error;
}

void WaitForInterrupt(std::stop_source& source) {
    char octet = 0;
    while (read(interrupts[0], &octet, 1) < 0 && errno == EINTR) {
    }
    source.request_stop();
}

} // namespace

void PrepareConsole() {} // the system changes nothing on its own

std::stop_token StopOnInterrupt() {
    static std::stop_source& source = *new std::stop_source; // its thread lasts until the process ends
    static const bool installed = [] {
        if (pipe2(interrupts.data(), O_CLOEXEC) != 0)
            return false;
        std::thread(WaitForInterrupt, std::ref(source)).detach();
        struct sigaction action {};
        action.sa_handler = NoteInterrupt;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
            sigaction(signal, &action, nullptr);
        return true;
    }();
    static_cast<void>(installed);
    return source.get_token();
}

bool PrintText(std::string_view text) {
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

} // namespace platform
