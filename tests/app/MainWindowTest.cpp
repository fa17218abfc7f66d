#include "app/BackupSvrConfigWizard.h"
#include "support/PageBench.h"
#include "support/TestMain.h"
#include "window/BTaskMMCDlg.h"
#include "window/CloudSvcPage.h"
#include "window/ConsoleStatusBar.h"
#include "window/PageHead.h"
#include "window/ServiceNotice.h"
#include "window/SetBandWidthLimitDlg.h"
#include "window/WindowGeometry.h"

#include <QAbstractButton>
#include <QPushButton>

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
        m_bench = std::make_unique<PageBench<>>();
        m_log.clear();
        StoreWindowGeometry(QRect(0, 0, 0, 0));
    }

    void cleanup() { m_bench.reset(); }

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
        auto* head = window->findChild<CPageHead*>();
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

    void tellsThatTheServiceIsSilent() {
        const auto window = MakeWindow();
        auto* notice = window->findChild<CServiceNotice*>();
        const auto ask = [&] {
            notice->Start();
            m_bench->reader.StepAll();
        };
        m_bench->reader.StepAll();
        QVERIFY(!notice->isVisible());

        m_log.clear();
        m_bench->service->SetFault(devservice::HttpFault::Refuse);
        ask();
        QVERIFY(notice->isVisible());
        QVERIFY(notice->Text().startsWith(u"The service has not answered since "_s));
        const QString said = notice->Text();
        ask();
        QCOMPARE(notice->Text(), said);

        m_bench->service->ClearFaults();
        ask();
        QVERIFY(!notice->isVisible());
        QTRY_COMPARE(m_log, QStringList({u"A reload"_s}));
    }

    void setsBandwidthLimits() {
        m_bench->service->SetSetting("UploadBandwidth", "120");
        const auto window = MakeWindow();
        m_bench->reader.StepAll();
        auto* bar = window->findChild<CConsoleStatusBar*>();
        QCOMPARE(bar->PartText(CConsoleStatusBar::Version), u"Version: 1.2"_s);
        QTest::mouseClick(bar->childAt(600, 12), Qt::LeftButton);
        auto* dialog = window->findChild<CSetBandWidthLimitDlg*>();
        QVERIFY(dialog);
        auto* ok = dialog->findChild<QPushButton*>();
        QVERIFY(!ok->isEnabled());
        m_bench->reader.StepAll();
        QVERIFY(ok->isEnabled());
        QCOMPARE(dialog->Wanted().upload, 120);
        QCOMPARE(dialog->Wanted().download, 0);

        dialog->SetLimits({2147483647, 7});
        m_bench->service->ForgetRequests();
        dialog->accept();
        m_bench->reader.StepAll();
        QCOMPARE(m_bench->service.RequestLines(),
                 QStringList({u"PUT /settings/UploadBandwidth?ValueType=1&Value=2147483647"_s,
                              u"PUT /settings/DownloadBandwidth?ValueType=1&Value=7"_s}));
    }

    void stepsLimitsByFive() {
        CLimitField field(u"limit"_s);
        const QList<std::array<int, 3>> cases{{0, 1, 5},  {5, -1, 0}, {3, -1, 0},
                                              {8, -1, 3}, {7, 1, 12}, {2147483645, 1, 2147483647}};
        for (const auto& [before, steps, after] : cases) {
            field.SetValue(before);
            field.stepBy(steps);
            QCOMPARE(field.Value(), after);
        }
        for (const QString& text : {u"-1"_s, u"2147483648"_s, u"1.5"_s, u"x"_s}) {
            QString typed = text;
            int position = 0;
            QCOMPARE(field.validate(typed, position), QValidator::Invalid);
        }
    }

    void changesCloudSpace() {
        const auto window = MakeWindow();
        auto* bar = window->findChild<CConsoleStatusBar*>();
        m_bench->reader.StepAll();
        QCOMPARE(bar->PartText(CConsoleStatusBar::CloudSpace), u"Not In Cloud Space"_s);
        QTest::mouseClick(bar->childAt(300, 12), Qt::LeftButton);
        auto* page = window->findChild<CloudSvcPage*>();
        QVERIFY(page);
        m_bench->reader.StepAll();
        for (QPushButton* button : page->findChildren<QPushButton*>())
            if (button->text() == u"Publish"_s)
                button->click();
        m_bench->reader.StepAll();
        QCOMPARE(m_bench->service->Setting("PublishedToCloudSVC").value_or(""), std::string("True"));
        page->reject();
        m_bench->reader.StepAll();
        QCOMPARE(bar->PartText(CConsoleStatusBar::CloudSpace), u"In Cloud Space"_s);
    }

    void keepsItsPlace() {
        StoreWindowGeometry(QRect(30, 40, 0, 600));
        QCOMPARE(MakeWindow()->size(),
                 QSize(986, 678).boundedTo(QGuiApplication::primaryScreen()->availableSize()));

        const QRect place(-40, 30, 820, 500);
        StoreWindowGeometry(place);
        auto window = MakeWindow();
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

    void wizardClosesOnlyWhenTheServiceTookIt() {
        CBackupSvrConfigWizard wizard(m_bench->client, m_bench->reader, m_bench->prompts);
        wizard.open();
        wizard.next();
        m_bench->service->SetFault(devservice::HttpFault::Refuse);
        m_bench->prompts.ExpectMessage(
            u"The service did not take the configuration. Check that it is running, then choose "
            u"Finish again."_s);
        QTest::mouseClick(wizard.button(QWizard::FinishButton), Qt::LeftButton);
        m_bench->reader.StepAll();
        QVERIFY(wizard.isVisible());
        m_bench->service->ClearFaults();
        QTest::mouseClick(wizard.button(QWizard::FinishButton), Qt::LeftButton);
        m_bench->reader.StepAll();
        QVERIFY(!wizard.isVisible());
        QCOMPARE(m_bench->service->Setting("BSInitConfig").value_or(""), std::string("True"));
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
        auto window = std::make_unique<CBTaskMMCDlg>(
            m_bench->client, m_bench->counters, m_bench->prompts, m_bench->reader,
            CBTaskMMCDlg::Options{
                .title = u"Title"_s, .version = u"1.2"_s, .initialView = initialView, .pages = pages});
        window->show();
        return window;
    }
    QAbstractButton* ToolbarButton(const CBTaskMMCDlg& window) {
        for (QAbstractButton* button : window.findChild<CPageHead*>()->findChildren<QAbstractButton*>())
            if (button->isVisible())
                return button;
        return nullptr;
    }

    std::unique_ptr<PageBench<>> m_bench;
    QTemporaryDir m_config;
    QStringList m_log;
};

BTASK_TEST(MainWindowTest);

#include "MainWindowTest.moc"
