#pragma once

#include <memory>

/// One of the agent's services, known to the system's service manager and running, for as long as it lives.
/// Where there is no such manager, the lock of the development service already says so.
class AgentService {
public:
    explicit AgentService(const char* name = "brengroupsvc");
    ~AgentService();

private:
    struct Registration;
    std::unique_ptr<Registration> m_registration;
};
