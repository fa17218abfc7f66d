#include "support/AgentService.h"

#include "windows/RegisteredService.h"

#include <QTest>

struct AgentService::Registration {
    RegisteredService service{L"brengroupsvc"};
};

AgentService::AgentService() : m_registration(std::make_unique<Registration>()) {
    QVERIFY(m_registration->service.Start());
}

AgentService::~AgentService() = default;
