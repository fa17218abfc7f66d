#include "taskman/TaskManPanel.h"
#include "TaskFixture.h"
#include "support/TestMain.h"

#include <QCheckBox>
#include <QLabel>

using namespace Qt::Literals::StringLiterals;

const QString ReadLine = u"GET /settings/TaskAdvancedMode"_s;
const QString WriteLine = u"PUT /settings/TaskAdvancedMode?ValueType=1&Value="_s;

class TaskManPanelTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_panel = std::make_unique<CTaskManPanel>(m_fixture->console);
        m_panel->resize(900, 600);
    }

    void cleanup() {
        m_panel.reset();
        m_fixture.reset();
    }

    void beginsInTheKeptMode_data() {
        const Columns<QString, bool> row("value", "advanced");
        row("never set", {}, false);
        row("0", "0", false);
        row("1", "1", true);
        row("no number", "True", false);
    }

    void beginsInTheKeptMode() {
        const auto [value, advanced] = Fetched<QString, bool>();
        if (!value.isEmpty())
            m_fixture->service->SetSetting("TaskAdvancedMode", value.toStdString());
        QCOMPARE(ShownTabs(), QList<int>({0, 1}));
        Open();
        QCOMPARE(Box()->isChecked(), advanced);
        QCOMPARE(ShownTabs(), advanced ? QList<int>({0, 1, 2, 3, 4}) : QList<int>({0, 1}));
        m_panel->Deactivate();
        Open();
        QCOMPARE(Requests(), QStringList{ReadLine}); // once, and nothing is written
    }

    void keepsTheModeAsANumber() {
        Open();
        m_fixture->service->ForgetRequests();
        Box()->click();
        QCOMPARE(ShownTabs(), QList<int>({0, 1, 2, 3, 4}));
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service->Setting("TaskAdvancedMode"), std::optional<std::string>("1"));
        Box()->click();
        QCOMPARE(ShownTabs(), QList<int>({0, 1}));
        m_fixture->reader.StepAll();
        QCOMPARE(Requests(), QStringList({WriteLine + u'1', WriteLine + u'0'}));
        for (const auto fault : {devservice::HttpFault::Refuse, devservice::HttpFault::None}) {
            m_fixture->service->SetFault(fault);
            Box()->click();
            m_fixture->reader.StepAll();
            QCOMPARE(m_fixture->frame.StatusText().contains(u"not saved"),
                     fault != devservice::HttpFault::None);
        }
    }

    void aModeThatIsNotSavedSaysSoUntilItIs() {
        Open();
        m_fixture->service->SetFault(devservice::HttpFault::Refuse);
        Box()->click();
        m_panel->Deactivate(); // before the answer
        m_fixture->reader.StepAll();
        Open();
        m_panel->SelectPage(1);
        const auto labels = m_panel->findChildren<QLabel*>();
        const auto mark = std::find_if(labels.begin(), labels.end(),
                                       [](const QLabel* label) { return label->text() == u"not saved"_s; });
        QVERIFY(mark != labels.end() && (*mark)->isVisible());
        QVERIFY(m_panel->rect().contains((*mark)->mapTo(m_panel.get(), (*mark)->rect().bottomRight())));
        QVERIFY(Box()->accessibleDescription().contains(u"the service does not answer"_s));
        m_fixture->service->ClearFaults();
        Box()->click();
        m_fixture->reader.StepAll();
        QVERIFY(!(*mark)->isVisible());
    }

    void asksAgainAfterTheServiceWasGone() {
        m_fixture->service->SetSetting("TaskAdvancedMode", "1");
        m_fixture->service->SetFault(devservice::HttpFault::Refuse);
        Open();
        QCOMPARE(ShownTabs(), QList<int>({0, 1}));
        m_fixture->service->ClearFaults();
        m_panel->Deactivate();
        Open();
        QCOMPARE(ShownTabs(), QList<int>({0, 1, 2, 3, 4}));
        QVERIFY(Box()->isChecked());
    }

    void theUsersChoiceWinsOverALateAnswer() {
        m_panel->Activate();
        QVERIFY(m_fixture->reader.Work(Lane::Service)); // answered, and the answer is on its way
        Box()->click();
        m_fixture->reader.Finish();
        m_fixture->reader.StepAll();
        QVERIFY(Box()->isChecked());
        QCOMPARE(ShownTabs(), QList<int>({0, 1, 2, 3, 4}));
        QCOMPARE(Requests(), QStringList({ReadLine, WriteLine + u'1'}));
    }

private:
    void Open() { m_fixture->Open(*m_panel); }

    QList<int> ShownTabs() const {
        QList<int> shown;
        for (int tab = 0; tab < m_panel->PageCount(); ++tab)
            if (m_panel->IsTabShown(tab))
                shown.append(tab);
        return shown;
    }
    QCheckBox* Box() const { return m_panel->findChild<QCheckBox*>(); }
    /// Those of the mode.
    QStringList Requests() const { return m_fixture->service.RequestLines().filter(u"TaskAdvancedMode"_s); }

    std::unique_ptr<PageFixture<>> m_fixture;
    std::unique_ptr<CTaskManPanel> m_panel;
};

BTASK_TEST(TaskManPanelTest);

#include "TaskManPanelTest.moc"
