#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

/// first_paint RUNS PROGRAM [ARGUMENT...]: starts the program RUNS times and prints the milliseconds until
/// its first large window shows something else than the black screen below it: the median, the least and the
/// most.
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto Patience = std::chrono::seconds(30);
constexpr LONG LargeSide = 300;

struct Search {
    DWORD process = 0;
    HWND window = nullptr;
    RECT place{};
};

BOOL CALLBACK FindLargeWindow(HWND window, LPARAM parameter) {
    Search& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    RECT place{};
    if (process != search.process || !::IsWindowVisible(window) || !::GetWindowRect(window, &place) ||
        place.right - place.left < LargeSide || place.bottom - place.top < LargeSide)
        return TRUE;
    search.window = window;
    search.place = place;
    return FALSE;
}

bool IsPainted(const RECT& place) {
    const HDC screen = ::GetDC(nullptr);
    const COLORREF middle =
        ::GetPixel(screen, (place.left + place.right) / 2, place.top + (place.bottom - place.top) / 2);
    ::ReleaseDC(nullptr, screen);
    return middle != CLR_INVALID && middle != RGB(0, 0, 0);
}

/// The command line of a program and its arguments, each in quotes.
std::wstring CommandLine(const std::vector<std::wstring>& words) {
    std::wstring line;
    for (const std::wstring& word : words)
        line += L"\"" + word + L"\" ";
    return line;
}

std::optional<double> Measure(std::wstring commandLine) {
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    const Clock::time_point begin = Clock::now();
    if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                          &process))
        return std::nullopt;
    std::optional<double> taken;
    Search search;
    search.process = process.dwProcessId;
    while (!taken && Clock::now() - begin < Patience &&
           ::WaitForSingleObject(process.hProcess, 1) == WAIT_TIMEOUT) {
        ::EnumWindows(FindLargeWindow, reinterpret_cast<LPARAM>(&search));
        if (search.window && IsPainted(search.place))
            taken = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
    }
    ::PostMessageW(search.window, WM_CLOSE, 0, 0);
    if (::WaitForSingleObject(process.hProcess, 5000) != WAIT_OBJECT_0)
        ::TerminateProcess(process.hProcess, 1);
    ::WaitForSingleObject(process.hProcess, INFINITE);
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return taken;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    const int runs = argc > 2 ? std::max(1, _wtoi(argv[1])) : 0;
    if (runs == 0)
        return 2;
    std::vector<double> taken;
    for (int run = 0; run < runs; ++run) {
        const std::optional<double> one = Measure(CommandLine({argv + 2, argv + argc}));
        if (!one) {
            std::cerr << "No window was painted.\n";
            return 1;
        }
        taken.push_back(*one);
    }
    std::sort(taken.begin(), taken.end());
    std::cout << taken[taken.size() / 2] << ' ' << taken.front() << ' ' << taken.back() << '\n';
    return 0;
}
