#include "app/ConnectProgressDlg.h"
#include "support/TestMain.h"

#include <QMessageBox>
#include <QProgressBar>
#include <QSignalSpy>

#include <semaphore>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A service as the wait meets it; counts what was asked of it.
struct FakeService {
    bool runs = true;
    bool openFails = false;
    bool starts = true;
    int answersAfter = 0; ///< probes that fail before one succeeds
    std::atomic<int> started = 0;
    std::atomic<int> probes = 0;

    ServiceWait::Steps Steps() {
        return {[this] { return ServiceCheck{.running = runs, .openFailed = openFails}; },
                [this] {
                    ++started;
                    return starts;
                },
                [this](std::stop_token) { return ++probes > answersAfter; }};
    }
};

} // namespace

class ConnectProgressTest : public QObject {
    Q_OBJECT

private slots:
    void endsAsTheWaitDoes_data() {
        const Columns<bool, bool, bool, int, ConnectResult, int> row("runs", "mayStart", "starts",
                                                                     "answersAfter", "result", "started");
        row("answers at once", true, true, true, 0, ConnectResult::Answered, 0);
        row("answers after a while", true, false, true, 5, ConnectResult::Answered, 0);
        row("is started, then answers", false, true, true, 3, ConnectResult::Answered, 1);
        row("may not be started", false, false, true, 1000, ConnectResult::TimedOut, 0);
        row("does not start", false, true, false, 0, ConnectResult::StartRefused, 1);
        row("never answers", true, true, true, 1000, ConnectResult::TimedOut, 0);
    }

    void endsAsTheWaitDoes() {
        const auto [runs, mayStart, starts, answersAfter] = Fetched<bool, bool, bool, int>();
        FakeService service{.runs = runs, .starts = starts, .answersAfter = answersAfter};
        ServiceWait wait(service.Steps(), mayStart, 1ms);
        CConnectProgressDlg dialog(wait, 10ms);
        QSignalSpy finished(&dialog, &QDialog::finished);
        dialog.open();
        QVERIFY(finished.wait());
        QTEST(dialog.Result(), "result");
        QTEST(service.started.load(), "started");
        QVERIFY(service.probes <= ServiceWait::Tries);
        if (dialog.Result() == ConnectResult::TimedOut)
            QCOMPARE(dialog.findChild<QProgressBar*>()->value(), ServiceWait::Tries);
    }

    void stopsInsideAProbe() {
        std::binary_semaphore entered{0};
        bool stopped = false;
        ServiceWait::Steps steps = FakeService().Steps();
        steps.check = [] { return ServiceCheck{.running = true}; };
        steps.probe = [&](const std::stop_token& stop) {
            std::binary_semaphore left{0};
            const std::stop_callback onStop(stop, [&] { left.release(); });
            entered.release();
            left.acquire();
            stopped = true;
            return false;
        };
        {
            ServiceWait wait(steps, false, 1h);
            entered.acquire();
            QCOMPARE(wait.CurrentState(), ServiceWait::State::Waiting);
        }
        QVERIFY(stopped);
    }

    void tellsThatTheManagerRefused() {
        FakeService service{.runs = false, .openFails = true};
        ServiceWait wait(service.Steps(), false, 1ms);
        CConnectProgressDlg dialog(wait, 10ms);
        dialog.open();
        QTRY_VERIFY(dialog.findChild<QMessageBox*>());
        QCOMPARE(dialog.findChild<QMessageBox*>()->text(), u"Open Service Manager Failed\n"_s);
        QTRY_COMPARE(wait.CurrentState(), ServiceWait::State::Answered);
        QVERIFY(dialog.isVisible());
        dialog.findChild<QMessageBox*>()->accept();
        QTRY_VERIFY(!dialog.isVisible());
        QCOMPARE(dialog.Result(), ConnectResult::Answered);
    }
};

BTASK_TEST(ConnectProgressTest);

#include "ConnectProgressTest.moc"
