// Labels: threads painting
#include "app/ConnectProgressDlg.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QMessageBox>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTimer>

#include <future>
#include <semaphore>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A service as the wait meets it; counts what was asked of it.
struct FakeService {
    bool runs = true;
    bool openFails = false;
    bool starts = true;
    int stops = 0;        ///< checks that find it stopping
    int answersAfter = 0; ///< probes that fail before one succeeds
    std::atomic<int> started = 0;
    std::atomic<int> probes = 0;

    ServiceWait::Steps Steps() {
        return {[this](const std::stop_token&) {
                    return ServiceCheck{.running = runs, .stopping = stops-- > 0, .openFailed = openFails};
                },
                [this](const std::stop_token&) {
                    ++started;
                    return starts && stops < 0;
                },
                [this](const std::stop_token&) { return ++probes > answersAfter; }};
    }
};

} // namespace

class ConnectProgressTest : public QObject {
    Q_OBJECT

private slots:
    void endsAsTheWaitDoes_data() {
        const Columns<bool, int, bool, bool, int, ConnectResult, int> row(
            "runs", "stops", "mayStart", "starts", "answersAfter", "result", "started");
        row("answers at once", true, 0, true, true, 0, ConnectResult::Answered, 0);
        row("answers after a while", true, 0, false, true, 5, ConnectResult::Answered, 0);
        row("is started, then answers", false, 0, true, true, 3, ConnectResult::Answered, 1);
        row("stops, then is started", false, 4, true, true, 3, ConnectResult::Answered, 1);
        row("stops for ever", false, 10000, true, true, 0, ConnectResult::StartRefused, 1);
        row("stops, and may not be started", false, 10000, false, true, 1000, ConnectResult::TimedOut, 0);
        row("may not be started", false, 0, false, true, 1000, ConnectResult::TimedOut, 0);
        row("does not start", false, 0, true, false, 0, ConnectResult::StartRefused, 1);
        row("never answers", true, 0, true, true, 1000, ConnectResult::TimedOut, 0);
    }

    void endsAsTheWaitDoes() {
        const auto [runs, stops, mayStart, starts, answersAfter] = Fetched<bool, int, bool, bool, int>();
        FakeService service{.runs = runs, .starts = starts, .stops = stops, .answersAfter = answersAfter};
        ServiceWait wait(service.Steps(), mayStart, 1ms);
        CConnectProgressDlg dialog(wait, u"Console"_s, 10ms);
        QSignalSpy finished(&dialog, &QDialog::finished);
        dialog.open();
        QVERIFY(finished.wait());
        QTEST(dialog.Result(), "result");
        QTEST(service.started.load(), "started");
        QVERIFY(service.probes <= ServiceWait::Tries);
        if (dialog.Result() == ConnectResult::TimedOut)
            QCOMPARE(dialog.findChild<QProgressBar*>()->value(), ServiceWait::Tries);
    }

    void endsInsideEachStep_data() {
        const Columns<int> row("step");
        row("check", 0);
        row("start", 1);
        row("probe", 2);
    }

    void endsInsideEachStep() {
        QFETCH(const int, step);
        std::binary_semaphore entered{0};
        const auto hang = [&](const std::stop_token& stop) {
            std::binary_semaphore left{0};
            const std::stop_callback onStop(stop, [&] { left.release(); });
            entered.release();
            left.acquire();
            return false;
        };
        FakeService service{.runs = step == 2, .answersAfter = 1000};
        ServiceWait::Steps steps = service.Steps();
        if (step == 0)
            steps.check = [&](const std::stop_token& stop) { return ServiceCheck{.running = hang(stop)}; };
        else
            (step == 1 ? steps.start : steps.probe) = hang;
        {
            ServiceWait wait(steps, true, 1h);
            entered.acquire();
            QCOMPARE(wait.CurrentState(),
                     step == 2 ? ServiceWait::State::Waiting : ServiceWait::State::Starting);
        }
        QCOMPARE(service.started.load(), 0);
        QCOMPARE(service.probes.load(), 0);
    }

    void endsInsideARealRequest() {
        ServiceFixture service;
        service->SetFault(devservice::HttpFault::Hang);
        auto wait = std::make_unique<ServiceWait>(ServiceWait::RealSteps(), false);
        QTRY_VERIFY(!service.RequestLines().isEmpty());
        const auto ended = std::async(std::launch::async, [&wait] { wait.reset(); });
        QVERIFY(ended.wait_for(1s) == std::future_status::ready);
    }

    void keepsItsAnswerWhileItsBoxIsOpen() {
        FakeService service{.runs = false, .openFails = true};
        ServiceWait wait(service.Steps(), false, 1ms);
        QTRY_COMPARE(wait.CurrentState(), ServiceWait::State::Answered);
        CConnectProgressDlg dialog(wait, u"Console"_s, 1ms);
        int ticks = 0;
        QTimer beside;
        connect(&beside, &QTimer::timeout, this, [&ticks] { ++ticks; });
        beside.start(1ms);
        dialog.open();
        QTRY_VERIFY(dialog.findChild<QMessageBox*>());
        auto* box = dialog.findChild<QMessageBox*>();
        QCOMPARE(box->text(), u"Open Service Manager Failed\n"_s);
        QCOMPARE(box->windowTitle(), u"Console"_s);
        QCOMPARE(box->icon(), QMessageBox::Critical);
        QTRY_VERIFY(ticks > 2 * ServiceWait::Tries);
        QVERIFY(dialog.isVisible() && box->isVisible());
        box->accept();
        QTRY_VERIFY(!dialog.isVisible());
        QCOMPARE(dialog.Result(), ConnectResult::Answered);
    }
};

BTASK_TEST(ConnectProgressTest);

#include "ConnectProgressTest.moc"
