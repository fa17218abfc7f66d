#include <windows.h>

#include <string>

/// A service for tests: registered under any name, it runs until it is told to stop. With "fails" after its
/// path it ends before it has told the service control manager anything.
namespace {

SERVICE_STATUS_HANDLE g_status = nullptr;
HANDLE g_stop = nullptr;

void Report(DWORD state) {
    SERVICE_STATUS status{};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    status.dwControlsAccepted = state == SERVICE_RUNNING ? SERVICE_ACCEPT_STOP : 0;
    ::SetServiceStatus(g_status, &status);
}

DWORD WINAPI Control(DWORD control, DWORD, void*, void*) {
    if (control == SERVICE_CONTROL_STOP)
        ::SetEvent(g_stop);
    return NO_ERROR;
}

void WINAPI Run(DWORD, wchar_t** arguments) {
    g_stop = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    g_status = ::RegisterServiceCtrlHandlerExW(arguments[0], Control, nullptr);
    Report(SERVICE_RUNNING);
    ::WaitForSingleObject(g_stop, INFINITE);
    Report(SERVICE_STOPPED);
}

} // namespace

int main(int argc, char** argv) {
    if (argc > 1 && std::string(argv[1]) == "fails")
        return 1;
    std::wstring name; // ignored for a service that has its process to itself
    const SERVICE_TABLE_ENTRYW table[] = {{name.data(), Run}, {nullptr, nullptr}};
    return ::StartServiceCtrlDispatcherW(table) ? 0 : 1;
}
