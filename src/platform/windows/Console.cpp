#include "platform/Console.h"
#include "platform/windows/Handle.h"
#include "platform/windows/WideText.h"

#include <fcntl.h>
#include <io.h>
#include <stdio.h>

#ifndef ENABLE_VIRTUAL_TERMINAL_PROCESSING
#define ENABLE_VIRTUAL_TERMINAL_PROCESSING 0x0004
#endif

namespace platform {

void PrepareConsole() {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode))
        SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

std::stop_token StopOnInterrupt() {
    static std::stop_source& source = *new std::stop_source; // the handler's thread may outlive statics
    static const bool installed = SetConsoleCtrlHandler([](DWORD) -> BOOL { return source.request_stop(); },
                                                        TRUE); // what is not handled ends the program
    static_cast<void>(installed);
    return source.get_token();
}

bool PrintText(std::string_view text) {
    DWORD written = 0;
    HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    if (output != nullptr && output != INVALID_HANDLE_VALUE &&
        WriteFile(output, text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
        return written == text.size();
    if (!AttachConsole(ATTACH_PARENT_PROCESS))
        return false;
    const Handle console(
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, ShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    const std::wstring wide = Wide(text);
    return console &&
           WriteConsoleW(console.Get(), wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
}

} // namespace platform
