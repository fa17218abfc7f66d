#include "app/SystemOperations.h"
#include "app/WaitDlg.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "zep/SysInfo.h"

#include <QElapsedTimer>
#include <QMessageBox>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

/// Start-up's windows as a user meets them; each blocks its caller, so the user acts by a timer.
class SystemOperationsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_met = 0; }
    void cleanup() { ZEPSysInfoSetServerMode(false); }

    void aWindowStandsWhileSomethingIsWaitedFor_data() {
        const Columns<bool> row("closes");
        row("closed by the user", true);
        row("until the answer comes", false);
    }

    void aWindowStandsWhileSomethingIsWaitedFor() {
        QFETCH(const bool, closes);
        ServiceFixture service("empty");
        service->SetSetting("BSInitConfig", "True");
        service->SetFault(devservice::HttpFault::Hang);
        SystemOperations operations(CommandLine({u"program"_s}));
        operations.SetServerMode(true);
        operations.SetTitle(u"Console"_s);
        QElapsedTimer answered;
        OnWindow<WaitDlg>([&](WaitDlg& window) {
            QCOMPARE(window.windowTitle(), u"Console"_s);
            answered.start();
            if (closes)
                window.close();
            else
                service.Service().Stop();
        });
        const ServiceAnswer list = operations.RequestVdirList();
        QCOMPARE(m_met, 1);
        QVERIFY(answered.elapsed() < 1000 || !closes);
        QCOMPARE(list.outcome == ServiceOutcome::Cancelled, closes);
        QVERIFY(!list);
    }

    void aClosedWindowIsNoAnswer() {
        ServiceFixture service("empty");
        service->SetSetting("BSInitConfig", "True");
        SystemOperations operations(CommandLine({u"program"_s}));
        operations.SetServerMode(true);
        QCOMPARE(operations.IsServerConfigured(), std::optional(true));
        service->SetFault(devservice::HttpFault::Hang);
        OnWindow<WaitDlg>([](WaitDlg& window) { QTest::keyClick(&window, Qt::Key_Escape); });
        QCOMPARE(operations.IsServerConfigured(), std::nullopt);
    }

    void withoutItsShellTheDesktopEndsAndSaysWhereItLooked() {
        const ServiceFixture home(ServerHome()); // whose service is no shell
        SystemOperations operations(CommandLine({u"program"_s}));
        CBTaskMMCApp app(CommandLine({u"program"_s}), operations);
        OnWindow<QMessageBox>([&](QMessageBox& box) {
            QCOMPARE(box.icon(), QMessageBox::Critical);
            QCOMPARE(box.windowTitle(), ConsoleTitle(false, false));
            QVERIFY(box.detailedText().contains(u"IOSGUISHELLUPMUTEX"_s));
            if (QSysInfo::productType() != "windows"_L1)
                QVERIFY2(box.detailedText().contains(home.Home() + "/run"_L1),
                         qPrintable(box.detailedText()));
            box.accept();
        });
        QVERIFY(!app.InitInstance());
        QCOMPARE(app.ExitCode(), 1);
    }

    void anEnvironmentOfNoUseIsToldInTheServersName() {
        const ServiceFixture home(ServerHome());
        qputenv("BREN_SERVICE_PORT", "port");
        SystemOperations operations(CommandLine({u"program"_s}));
        CBTaskMMCApp app(CommandLine({u"program"_s, u"/server"_s, u"/runas"_s}), operations);
        OnWindow<QMessageBox>([&](QMessageBox& box) {
            QCOMPARE(box.windowTitle(), ConsoleTitle(true, false));
            QVERIFY(box.text().contains(u"\"port\""_s));
            box.accept();
        });
        QVERIFY(!app.InitInstance());
        QCOMPARE(app.ExitCode(), 2);
    }

private:
    static devservice::Options ServerHome() {
        devservice::Options options;
        options.scenario = "empty";
        options.serverMode = true;
        return options;
    }

    /// Calls `act` with the window of this kind once one is to be seen.
    template <typename Window, typename Act>
    void OnWindow(Act act) {
        QTimer::singleShot(1ms, this, [this, act] {
            auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
            if (!window || !window->isVisible())
                return OnWindow<Window>(act);
            ++m_met;
            act(*window);
        });
    }

    int m_met = 0;
};

BTASK_TEST(SystemOperationsTest);

#include "SystemOperationsTest.moc"
