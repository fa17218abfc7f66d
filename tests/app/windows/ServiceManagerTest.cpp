#include "app/ServiceWait.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "windows/RegisteredService.h"

#include <QTest>

#include <optional>

using namespace std::chrono_literals;
using Kind = RegisteredService::Kind;

Q_DECLARE_METATYPE(std::optional<Kind>)

/// The wait for the service, asking the real service control manager.
class ServiceManagerTest : public QObject {
    Q_OBJECT

private slots:
    void findsAndStartsTheService_data() {
        const Columns<std::optional<Kind>, bool, ServiceWait::State> row("kind", "running", "ends");
        row("runs", Kind::Runs, true, ServiceWait::State::Answered);
        row("stopped, starts", Kind::Runs, false, ServiceWait::State::Answered);
        row("fails to start", Kind::FailsToStart, false, ServiceWait::State::StartRefused);
        row("its program is gone", Kind::HasNoProgram, false, ServiceWait::State::StartRefused);
        row("not installed", {}, false, ServiceWait::State::StartRefused);
    }

    void findsAndStartsTheService() {
        const auto [kind, running] = Fetched<std::optional<Kind>, bool>();
        const ServiceFixture channel; // what the service answers once it runs
        std::optional<RegisteredService> service;
        if (kind) {
            service.emplace(L"brengroupsvc", *kind);
            QVERIFY(service->IsRegistered());
        }
        QVERIFY(!running || service->Start());
        const ServiceCheck check = CheckService();
        QCOMPARE(check.running, running);
        QCOMPARE(check.openFailed, !kind);
        {
            const ServiceWait mayNotStart(ServiceWait::RealSteps(), false, 1ms);
            QTRY_COMPARE(mayNotStart.CurrentState(), ServiceWait::State::Answered);
            QVERIFY(!service || service->IsRunning() == running);
        }
        const ServiceWait wait(ServiceWait::RealSteps(), true, 1ms);
        QTRY_VERIFY(wait.CurrentState() != ServiceWait::State::Starting &&
                    wait.CurrentState() != ServiceWait::State::Waiting);
        QTEST(wait.CurrentState(), "ends");
        if (wait.CurrentState() == ServiceWait::State::Answered)
            QTRY_VERIFY(service->IsRunning());
    }
};

BTASK_TEST(ServiceManagerTest);
#include "ServiceManagerTest.moc"
