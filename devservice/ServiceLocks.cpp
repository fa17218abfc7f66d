#include "devservice/ServiceLocks.h"

#include "platform/Folders.h"

#include <stdexcept>

namespace devservice {

void ServiceLocks::Take(const std::filesystem::path& home, bool serverMode) {
    m_service = platform::ServiceLock::Take(home, "brengroupsvc");
    if (!m_service)
        throw std::runtime_error("another service runs in " + platform::Utf8FromPath(home) +
                                 ", or it cannot be written");
    m_service->SetState(platform::ServiceState::StartPending);
    if (!serverMode)
        m_shell = platform::NamedMutex::Hold("IOSGUISHELLUPMUTEX"); // held by another it does its service too
}

void ServiceLocks::SayRunning() {
    if (m_service)
        m_service->SetState(platform::ServiceState::Running);
}

void ServiceLocks::Release() {
    m_shell.reset();
    m_service.reset();
}

} // namespace devservice
