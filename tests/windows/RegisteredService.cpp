#include "RegisteredService.h"

#include <windows.h>

#include <chrono>
#include <filesystem>

namespace {

std::wstring ProgramOf(RegisteredService::Kind kind) {
    wchar_t self[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, self, MAX_PATH);
    const bool exists = kind != RegisteredService::Kind::HasNoProgram;
    const std::filesystem::path program =
        std::filesystem::path(self).replace_filename(exists ? L"probe_service.exe" : L"no_such_service.exe");
    return L"\"" + program.wstring() + L"\"" +
           (kind == RegisteredService::Kind::FailsToStart ? L" fails" : L"");
}

} // namespace

RegisteredService::RegisteredService(const std::wstring& name, Kind kind)
    : m_manager(::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)) {
    m_service = ::CreateServiceW(m_manager, name.c_str(), name.c_str(), SERVICE_ALL_ACCESS,
                                 SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL,
                                 ProgramOf(kind).c_str(), nullptr, nullptr, nullptr, nullptr, nullptr);
}

RegisteredService::~RegisteredService() {
    if (m_service) {
        Stop();
        ::DeleteService(m_service);
        ::CloseServiceHandle(m_service);
    }
    if (m_manager)
        ::CloseServiceHandle(m_manager);
}

unsigned long RegisteredService::State() const {
    SERVICE_STATUS status{};
    return ::QueryServiceStatus(m_service, &status) ? status.dwCurrentState : 0;
}

bool RegisteredService::Reaches(unsigned long state) const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (State() != state) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        ::Sleep(5);
    }
    return true;
}

bool RegisteredService::IsRunning() const {
    return State() == SERVICE_RUNNING;
}

bool RegisteredService::Start() const {
    return ::StartServiceW(m_service, 0, nullptr) && Reaches(SERVICE_RUNNING);
}

bool RegisteredService::Stop() const {
    SERVICE_STATUS status{};
    ::ControlService(m_service, SERVICE_CONTROL_STOP, &status);
    return Reaches(SERVICE_STOPPED);
}
