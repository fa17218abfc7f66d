#include "support/AgentService.h"

#include "windows/RegisteredService.h"

#include <QTest>

struct AgentService::Registration {
    explicit Registration(const std::string& name) : service(std::wstring(name.begin(), name.end())) {}
    RegisteredService service;
};

AgentService::AgentService(const char* name) : m_registration(std::make_unique<Registration>(name)) {
    QVERIFY(m_registration->service.Start());
}

AgentService::~AgentService() = default;
