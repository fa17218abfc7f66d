#pragma once

#include <memory>

/// The agent's service, known to the system's service manager and running, for as long as it lives. Where
/// there is no such manager, the lock of the development service already says so.
class AgentService {
public:
    AgentService();
    ~AgentService();

private:
    struct Registration;
    std::unique_ptr<Registration> m_registration;
};
