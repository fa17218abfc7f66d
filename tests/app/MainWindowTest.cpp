#include "app/BTaskMMCDlg.h"
#include "app/BackupSvrConfigWizard.h"
#include "app/CloudSvcPage.h"
#include "app/ConsoleStatusBar.h"
#include "app/PageHead.h"
#include "app/ServiceNotice.h"
#include "app/SetBandWidthLimitDlg.h"
#include "app/WindowGeometry.h"
#include "service/ServiceClient.h"
#include "support/ScriptedPrompts.h"
#include "support/ServiceFixture.h"
#include "support/SteppingReader.h"
#include "support/TestMain.h"
#include "ui/BrenPanel.h"
#include "zep/LiveCounters.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A page that writes down what the window does with it.
class TestPage : public CBrenPanel {
public:
    TestPage(const Console& console, QString name, QStringList& log)
        : CBrenPanel(console.frame), m_name(std::move(name)), m_log(log) {}

    void Activate() override {
        CBrenPanel::Activate();
        m_log << m_name + u" shown"_s;
        Frame().SetStatusText(m_name + u" status"_s);
        Frame().SetToolbar(*this, {{u"Do "_s + m_name, 77}});
    }
    void Deactivate() override {
        CBrenPanel::Deactivate();
        m_log << m_name + u" hidden"_s;
    }
    void OnCommand(int command) override { m_log << m_name + u" command "_s + QString::number(command); }

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
        m_fixture = std::make_unique<ServiceFixture>();
        m_counters = std::make_unique<LiveCounters>();
        m_prompts = std::make_unique<ScriptedPrompts>();
        m_reader = std::make_unique<SteppingReader>();
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
        QCOMPARE(m_log, QStringList({shown + u" shown"_s}));
    }

    void hostsOnePageAtATime() {
        const auto window = MakeWindow();
        auto* head = window->findChild<CPageHead*>();
        m_log.clear();
        window->SelectSection(1);
        QCOMPARE(m_log, QStringList({u"A hidden"_s, u"B shown"_s}));
        QCOMPARE(head->StatusText(), u"B status"_s);
        QCOMPARE(window->windowTitle(), u"Title"_s);

        m_log.clear();
        QTRY_VERIFY(ToolbarButton(*window));
        QTest::mouseClick(ToolbarButton(*window), Qt::LeftButton);
        QCOMPARE(m_log, QStringList({u"B command 77"_s}));
        window->SelectSection(1);
        QCOMPARE(m_log.size(), 1);
    }

    void tellsThatTheServiceIsSilent() {
        const auto window = MakeWindow();
        auto* notice = window->findChild<CServiceNotice*>();
        m_reader->StepAll();
        QVERIFY(!notice->isVisible());

        m_log.clear();
        m_fixture->Service().SetFault(devservice::HttpFault::Refuse);
        notice->Start();
        m_reader->StepAll();
        QVERIFY(notice->isVisible());
        QVERIFY(notice->Text().startsWith(u"The service has not answered since "_s));
        const QString said = notice->Text();
        notice->Start();
        m_reader->StepAll();
        QCOMPARE(notice->Text(), said);

        m_fixture->Service().ClearFaults();
        notice->Start();
        m_reader->StepAll();
        QVERIFY(!notice->isVisible());
        QTRY_COMPARE(m_log, QStringList({u"A command %1"_s.arg(Command::Refresh)}));
    }

    void setsBandwidthLimits() {
        m_fixture->Service().SetSetting("UploadBandwidth", "120");
        const auto window = MakeWindow();
        m_reader->StepAll();
        auto* bar = window->findChild<CConsoleStatusBar*>();
        QCOMPARE(bar->PartText(CConsoleStatusBar::Version), u"Version: 1.2"_s);
        QTest::mouseClick(bar->childAt(600, 12), Qt::LeftButton);
        auto* dialog = window->findChild<CSetBandWidthLimitDlg*>();
        QVERIFY(dialog);
        auto* ok = dialog->findChild<QPushButton*>();
        QVERIFY(!ok->isEnabled());
        m_reader->StepAll();
        QVERIFY(ok->isEnabled());
        QCOMPARE(dialog->Wanted().upload, 120);
        QCOMPARE(dialog->Wanted().download, 0);

        dialog->SetLimits({2147483647, 7});
        m_fixture->Service().ForgetRequests();
        dialog->accept();
        m_reader->StepAll();
        QCOMPARE(m_fixture->RequestLines(),
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
        m_reader->StepAll();
        QCOMPARE(bar->PartText(CConsoleStatusBar::CloudSpace), u"Not In Cloud Space"_s);
        QTest::mouseClick(bar->childAt(300, 12), Qt::LeftButton);
        auto* page = window->findChild<CloudSvcPage*>();
        QVERIFY(page);
        m_reader->StepAll();
        for (QPushButton* button : page->findChildren<QPushButton*>()) {
            if (button->text() == u"Publish"_s)
                button->click();
        }
        m_reader->StepAll();
        QCOMPARE(m_fixture->Service().Setting("PublishedToCloudSVC").value_or(""), std::string("True"));
        page->reject();
        m_reader->StepAll();
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
        CBackupSvrConfigWizard wizard(m_client, *m_reader, *m_prompts);
        wizard.open();
        wizard.next();
        m_fixture->Service().SetFault(devservice::HttpFault::Refuse);
        m_prompts->ExpectMessage(
            u"The service did not take the configuration. Check that it is running, then choose "
            u"Finish again."_s);
        QTest::mouseClick(wizard.button(QWizard::FinishButton), Qt::LeftButton);
        m_reader->StepAll();
        QVERIFY(wizard.isVisible());
        m_fixture->Service().ClearFaults();
        QTest::mouseClick(wizard.button(QWizard::FinishButton), Qt::LeftButton);
        m_reader->StepAll();
        QVERIFY(!wizard.isVisible());
        QCOMPARE(m_fixture->Service().Setting("BSInitConfig").value_or(""), std::string("True"));
    }

private:
    std::unique_ptr<CBTaskMMCDlg> MakeWindow(int initialView = 0) {
        std::vector<PageEntry> pages;
        for (const QString& name : {u"A"_s, u"B"_s, u"C"_s}) {
            pages.push_back({name, u"tasks"_s, [this, name](const Console& console) -> CBrenPanel* {
                                 return new TestPage(console, name, m_log);
                             }});
        }
        auto window = std::make_unique<CBTaskMMCDlg>(
            m_client, *m_counters, *m_prompts, *m_reader,
            CBTaskMMCDlg::Options{
                .title = u"Title"_s, .version = u"1.2"_s, .initialView = initialView, .pages = pages});
        window->show();
        return window;
    }
    QAbstractButton* ToolbarButton(const CBTaskMMCDlg& window) {
        for (QAbstractButton* button : window.findChild<CPageHead*>()->findChildren<QAbstractButton*>()) {
            if (button->isVisible())
                return button;
        }
        return nullptr;
    }

    std::unique_ptr<ServiceFixture> m_fixture;
    QTemporaryDir m_config;
    ServiceClient m_client;
    std::unique_ptr<LiveCounters> m_counters;
    std::unique_ptr<ScriptedPrompts> m_prompts;
    std::unique_ptr<SteppingReader> m_reader;
    QStringList m_log;
};

BTASK_TEST(MainWindowTest);

#include "MainWindowTest.moc"
