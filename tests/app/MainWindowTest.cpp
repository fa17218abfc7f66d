#include "app/BackupSvrConfigWizard.h"
#include "app/Pages.h"
#include "page/BrenDialog.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"
#include "window/BTaskMMCDlg.h"
#include "window/ConsoleStatusBar.h"
#include "window/PageHead.h"
#include "window/ServiceNotice.h"
#include "window/WindowGeometry.h"

#include <QAbstractButton>
#include <QPushButton>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A page that writes down what the window does with it.
class TestPage : public CBrenPanel {
public:
    TestPage(const Console& console, QString name, QStringList& log)
        : CBrenPanel(console), m_name(std::move(name)), m_log(log) {}

    void Activate() override {
        SetHelp(m_name + u" status"_s);
        SetToolbar({{u"Do "_s + m_name, 0, [this] { m_log << m_name + u" does"_s; }}});
        m_log << m_name + u" shown"_s;
        CBrenPanel::Activate();
    }
    void Deactivate() override {
        CBrenPanel::Deactivate();
        m_log << m_name + u" hidden"_s;
    }
    void Reload() override { m_log << m_name + u" reload"_s; }

private:
    QString m_name;
    QStringList& m_log;
};

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        qputenv("XDG_CONFIG_HOME", m_config.path().toUtf8());
        qputenv("XDG_RUNTIME_DIR", m_config.path().toUtf8());
        m_fixture = std::make_unique<PageFixture<>>();
        m_log.clear();
        StoreWindowGeometry(QRect(0, 0, 0, 0));
    }

    void cleanup() { m_fixture.reset(); }

    void selectsTheInitialSection_data() {
        const Columns<int, QString> row("view", "shown");
        row("none", 0, "A");
        row("the number is one less than the section", 1, "C");
        row("no such section", 2, "A");
        row("largest", std::numeric_limits<int>::max(), "A");
        row("negative", -2, "A");
        row("smallest", std::numeric_limits<int>::min(), "A");
    }

    void selectsTheInitialSection() {
        QFETCH(int, view);
        const auto window = MakeWindow(view);
        QFETCH(QString, shown);
        QCOMPARE(m_log, QStringList({shown + u" shown"_s, shown + u" reload"_s}));
    }

    void hostsOnePageAtATime() {
        const auto window = MakeWindow();
        auto* head = window->findChild<PageHead*>();
        m_log.clear();
        window->SelectSection(1);
        QCOMPARE(m_log, QStringList({u"A hidden"_s, u"B shown"_s, u"B reload"_s}));
        QCOMPARE(head->StatusText(), u"B status"_s);
        QCOMPARE(window->windowTitle(), u"Title"_s);

        m_log.clear();
        QTRY_VERIFY(ToolbarButton(*window));
        QTest::mouseClick(ToolbarButton(*window), Qt::LeftButton);
        QCOMPARE(m_log, QStringList({u"B does"_s}));
        window->SelectSection(1);
        QCOMPARE(m_log.size(), 1);
    }

    void fitsASmallScreen() {
        const auto window = MakeWindow();
        QVERIFY(window->minimumSizeHint().width() <= 640); // 1280 x 1024 at scale 2
        QVERIFY(window->minimumSizeHint().height() <= 460);
    }

    void tellsThatTheServiceIsSilent() {
        const auto window = MakeWindow();
        auto* notice = window->findChild<ServiceNotice*>();
        const auto ask = [&] {
            notice->Start();
            m_fixture->reader.StepAll();
        };
        m_fixture->reader.StepAll();
        QVERIFY(!notice->isVisible());

        m_log.clear();
        const QWidget* page = window->CurrentPage();
        const QPoint place = page->mapTo(window.get(), QPoint());
        m_fixture->service->SetFault(devservice::HttpFault::Refuse);
        ask();
        QVERIFY(notice->isVisible());
        QCOMPARE(page->mapTo(window.get(), QPoint()), place); // nothing moves under the mouse
        if (QSysInfo::productType() != "windows"_L1)          // whose fonts here are wider than a user's
            QVERIFY(notice->height() >= notice->heightForWidth(notice->width()));
        QVERIFY(notice->Text().startsWith(u"The service has not answered since "_s));
        const QString said = notice->Text();
        ask();
        QCOMPARE(notice->Text(), said);

        m_fixture->service->ClearFaults();
        ask();
        QVERIFY(!notice->isVisible());
        QTRY_COMPARE(m_log, QStringList({u"A reload"_s}));
    }

    void theStatusBarOpensDialogs_data() {
        const Columns<int, QString, QString, QString> row("x", "keys", "setting", "after");
        row("cloud space", 300, " ", "PublishedToCloudSVC", "True");
        row("upload", 500, "75", "UploadBandwidth", "75");
        row("download", 700, "80", "UploadBandwidth", "80");
    }

    void theStatusBarOpensDialogs() {
        const auto [x, keys, setting, after] = Fetched<int, QString, QString, QString>();
        m_fixture->service->SetSetting("UploadBandwidth", "120");
        const auto window = MakeWindow();
        m_fixture->reader.StepAll();
        auto* bar = window->findChild<ConsoleStatusBar*>();
        QCOMPARE(bar->PartText(ConsoleStatusBar::Version), u"Version: 1.2"_s);
        QCOMPARE(bar->PartText(ConsoleStatusBar::CloudSpace), u"Not In Cloud Space"_s);
        QTest::mouseClick(bar->childAt(x, 12), Qt::LeftButton);
        auto* dialog = window->findChild<CBrenDialog*>();
        QVERIFY(dialog);
        m_fixture->reader.StepAll();
        m_fixture->service->ForgetRequests();
        QTest::keyClicks(dialog->focusWidget(), keys);
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
        m_fixture->reader.StepAll();
        QVERIFY(!dialog->isVisible());
        QCOMPARE(m_fixture->service.RequestLines().filter(u"PUT"_s).size(), 1);
        QCOMPARE(m_fixture->service->Setting(setting.toStdString()).value_or(""), after.toStdString());
        QCOMPARE(bar->PartText(ConsoleStatusBar::CloudSpace),
                 x == 300 ? u"In Cloud Space"_s : u"Not In Cloud Space"_s);
    }

    void keepsItsPlace() {
        StoreWindowGeometry(QRect(30, 40, 0, 600));
        auto window = MakeWindow();
        const QRect room =
            window->screen()->availableGeometry().marginsRemoved(window->windowHandle()->frameMargins());
        QCOMPARE(window->size(), QSize(986, 678).boundedTo(room.size()));

        const QRect place(-4, 30, 800, 500);
        StoreWindowGeometry(place);
        window = MakeWindow();
        const QRect shown = window->geometry();
        window->close();
        QTRY_VERIFY(!window->isVisible());
        QCOMPARE(ReadWindowGeometry().value_or(QRect()), place);
        window = MakeWindow();
        QCOMPARE(window->geometry(), shown);

        window->showMaximized();
        window->close();
        QTRY_VERIFY(!window->isVisible());
        QCOMPARE(ReadWindowGeometry().value_or(QRect()), place);
    }

    void theSetUpWizardEndsOnlyWhenTheServiceTookIt() {
        auto* wizard = new CBackupSvrConfigWizard(m_fixture->console);
        WizardRider rider(wizard, m_fixture->reader);
        m_fixture->service->SetFault(devservice::HttpFault::Refuse);
        const QString failure = u"The service did not take the configuration. Check that it is running, then "
                                u"choose Finish again."_s;
        m_fixture->prompts.ExpectMessage(failure);
        QVERIFY(rider.Ride(u"focus Next | key Space | page Backup Now | Finish | step | says %1 | "
                           u"focus Finish | on Cancel"_s.arg(failure)));
        m_fixture->service->ClearFaults();
        // Neither the second press nor what closes a window may end it while the server is being marked.
        QVERIFY(rider.Ride(u"key Space | key Space | key Escape | busy | off Cancel | steps | finished"_s));
        QCOMPARE(m_fixture->service->Setting("BSInitConfig").value_or(""), std::string("True"));
    }

    void theSetUpWizardCanBeLeft() {
        m_fixture->service->ForgetRequests();
        auto* wizard = new CBackupSvrConfigWizard(m_fixture->console);
        WizardRider rider(wizard, m_fixture->reader);
        QVERIFY(rider.Ride(u"Next | Back | off Back | key Return | page Backup Now | key Escape | closed"_s));
        QVERIFY(m_fixture->service.RequestLines().isEmpty());
    }

private:
    std::unique_ptr<CBTaskMMCDlg> MakeWindow(int initialView = 0) {
        std::vector<PageEntry> pages;
        for (const QString& name : {u"A"_s, u"B"_s, u"C"_s}) {
            const auto make = [this, name](const Console& console) {
                return new TestPage(console, name, m_log);
            };
            pages.push_back({name, u"tasks"_s, make});
        }
        auto window = std::make_unique<CBTaskMMCDlg>(m_fixture->client, m_fixture->counters,
                                                     m_fixture->prompts, m_fixture->reader,
                                                     CBTaskMMCDlg::Options{.title = u"Title"_s,
                                                                           .version = u"1.2"_s,
                                                                           .initialView = initialView,
                                                                           .pages = pages,
                                                                           .cloudSpace = CloudSpaceDialog,
                                                                           .bandwidth = BandwidthDialog});
        window->show();
        return window;
    }
    QAbstractButton* ToolbarButton(const CBTaskMMCDlg& window) {
        for (QAbstractButton* button : window.findChild<PageHead*>()->findChildren<QAbstractButton*>())
            if (button->isVisible())
                return button;
        return nullptr;
    }

    std::unique_ptr<PageFixture<>> m_fixture;
    QTemporaryDir m_config;
    QStringList m_log;
};

BTASK_TEST(MainWindowTest);

#include "MainWindowTest.moc"
