#include "app/Pages.h"
#include "development/CheckRun.h"
#include "development/Silences.h"
#include "development/WatchedReader.h"
#include "lanes/ThreadReader.h"
#include "look/Look.h"
#include "support/ConsoleFixture.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "window/BTaskMMCDlg.h"

#include <QScreen>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize DefaultSize(986, 678);
constexpr QSize SmallSize(800, 600);

bool IsWindows() {
    return QSysInfo::productType() == "windows"_L1;
}

bool IsScaled() {
    return !qgetenv("QT_SCALE_FACTOR").isEmpty();
}

} // namespace

/// Every view of the console, swept.
class ViewsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { ApplyLook(*qApp); }

    /// With a scale of its own, and on Windows, the program runs a part of the rounds only.
    void cleanupTestCase() {
        if (IsScaled() || IsWindows())
            return;
        for (const QString& line : m_silences.Unused())
            qWarning().noquote() << line;
        QCOMPARE(m_silences.Unused(), QStringList());
    }

    void nothingIsFound_data() {
        const Columns<QSize, devservice::HttpFault, bool, bool> row("size", "fault", "server", "everything");
        if (IsScaled())
            return row("scaled", DefaultSize, devservice::HttpFault::None, false, false);
        row("default size", DefaultSize, devservice::HttpFault::None, false, true);
        if (IsWindows())
            return; // the other rounds look for nothing that is of one system
        row("a server", DefaultSize, devservice::HttpFault::None, true, true);
        row("small", SmallSize, devservice::HttpFault::None, false, false);
        row("service down", DefaultSize, devservice::HttpFault::Refuse, false, false);
        row("service refusing", DefaultSize, devservice::HttpFault::WrongStatus, false, false);
        row("service hanging", DefaultSize, devservice::HttpFault::Hang, false, false);
    }

    void nothingIsFound() {
        const auto [size, fault, server, everything] = Fetched<QSize, devservice::HttpFault, bool, bool>();
        ServiceFixture service(server ? "server" : "desktop");
        service->SetFault(fault);
        qputenv("HOME", QByteArray::fromStdString((service->Home() / "files").string())); // is counted
        ConsoleFixture<ThreadReader> parts;
        WatchedReader reader(parts.reader);
        CBTaskMMCDlg window(parts.client, parts.counters, parts.prompts, reader,
                            {.title = u"Title"_s,
                             .version = u"1.2"_s,
                             .pages = PagesOf(server, !server),
                             .cloudSpace = CloudSpaceDialog,
                             .bandwidth = BandwidthDialog});
        window.resize(size.boundedTo(window.screen()->availableSize()));
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        CheckRun::Options options;
        options.rules = everything ? Sweeps::Everything : Sweeps::Layout;
        if (IsWindows()) // the fonts of these tests are wider there than a user's
            options.rules &= ~(SweepRule::Fit | SweepRule::Overlap);
        if (fault == devservice::HttpFault::Hang)
            options.patience = std::chrono::milliseconds(200);
        CheckRun run(window, reader, DialogsOf(server), options);
        QSignalSpy finished(&run, &CheckRun::Finished);
        QVERIFY(finished.wait(120'000));
        const QStringList lines = ReportLines(m_silences.Loud(run.Finds()));
        for (const QString& line : lines)
            qWarning().noquote() << line;
        QCOMPARE(lines.size(), 0);
    }

private:
    SilenceBook m_silences;
};

BTASK_TEST(ViewsTest);
#include "ViewsTest.moc"
