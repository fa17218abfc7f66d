#pragma once

#include "platform/NamedObjects.h"
#include "platform/ServiceControl.h"

#include <filesystem>
#include <optional>

namespace devservice {

/// What others see of a running service without asking it: the service's lock and the shell's mutex.
class ServiceLocks {
public:
    /// Throws std::runtime_error when another service runs in this home.
    void Take(const std::filesystem::path& home, bool serverMode);
    void SayRunning();
    void Release();

private:
    std::optional<platform::ServiceLock> m_service;
    std::optional<platform::NamedMutex> m_shell;
};

} // namespace devservice
