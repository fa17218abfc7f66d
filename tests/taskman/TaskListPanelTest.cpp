#include "taskman/TaskListPanel.h"
#include "TaskFixture.h"
#include "list/FindBar.h"
#include "page/NoticeLine.h"
#include "support/TestMain.h"
#include "taskman/TaskManItem.h"

#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeTask;

namespace {

const QString AskToCancel =
    u"Do you really want to cancel the task?\n\"Photos\" will be deleted for good. Its files stay."_s;

} // namespace

class TaskListPanelTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_fixture->service->PutTasks(
            {MakeTask("{1}", "Photos"), MakeTask("{2}", "Mail", "advbackup", TaskState::Running),
             MakeTask("{3}", "Default Task For X"), MakeTask("{4}", "Old", "backup", TaskState::Completed)});
    }

    void cleanup() { m_fixture.reset(); }

    void showsTheTasksOfItsFilter_data() {
        const Columns<TaskFilter, QStringList> row("filter", "titles");
        row("my tasks", TaskFilter::MyTasks, {u"Mail"_s, u"Photos"_s});
        row("completed", TaskFilter::CompletedUserTasks, {u"Old"_s});
        row("system", TaskFilter::SystemTasks, {u"Default Task For X"_s});
        row("all", TaskFilter::All, {u"Default Task For X"_s, u"Mail"_s, u"Old"_s, u"Photos"_s});
    }

    void showsTheTasksOfItsFilter() {
        QFETCH(TaskFilter, filter);
        QTEST(Titles(*MakePanel(filter)), "titles");
    }

    void commandsTheTaskThatWasClicked() {
        const auto panel = MakePanel();
        m_fixture->service->ForgetRequests();
        ClickAction(Card(*panel, u"Mail"_s), u"Pause"_s);
        ClickAction(Card(*panel, u"Mail"_s), u"Pause"_s); // the second click of a double click is swallowed
        ClickAction(Card(*panel, u"Photos"_s), u"Start Now"_s);
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service.RequestLines(),
                 QStringList({u"GET /schedule/pausetask?%7B2%7D"_s, u"GET /schedule/startnow?%7B1%7D"_s}));
    }

    void opensItsFindBarForTheWindow() {
        const auto panel = MakePanel();
        auto* bar = panel->findChild<FindBar*>();
        QVERIFY(panel->CanFind() && !bar->isVisible());
        panel->OpenFind();
        QVERIFY(bar->isVisible());
    }

    void tellsAFailedCommandUntilTheNextSuccess_data() {
        const Columns<bool, QString> row("isDown", "why");
        row("down", true, "the service does not answer");
        row("refusing", false, "the service did not take it");
    }

    void tellsAFailedCommandUntilTheNextSuccess() {
        const auto [isDown, why] = Fetched<bool, QString>();
        const auto panel = MakePanel();
        CTaskManItem* card = Card(*panel, u"Photos"_s);
        if (isDown)
            m_fixture->service->SetFault(devservice::HttpFault::Refuse);
        else
            m_fixture->service->SetAnswer("/schedule/startnow", devservice::Answer{500, {}});
        ClickAction(card, u"Start Now"_s);
        m_fixture->reader.StepAll();
        m_fixture->Refresh(*panel);
        QCOMPARE(card->Failure(), u"Not started: "_s + why);
        QVERIFY(card->accessibleDescription().startsWith(card->Failure()));
        QCOMPARE(m_fixture->frame.StatusText(), u"Not started (Photos): "_s + why);
        m_fixture->service->ClearFaults();
        m_fixture->service->SetAnswer("/schedule/startnow", {});
        ClickAction(card, u"Start Now"_s); // the refused command left the button as it was
        m_fixture->reader.StepAll();
        QCOMPARE(card->Failure(), QString());
        QCOMPARE(card->StatusState(), int(TaskState::Running)); // read back at once
        QVERIFY(m_fixture->frame.StatusText().startsWith("View tasks."_L1));
    }

    void readsAgainWhenTheCounterMoves() {
        const auto panel = MakePanel();
        m_fixture->service->SetTaskState("{1}", TaskState::Failed);
        QVERIFY(QTest::qWaitFor([&] { return m_fixture->reader.Step(Lane::Databases); }, 3000));
        QCOMPARE(Card(*panel, u"Photos"_s)->StatusState(), int(TaskState::Failed));
    }

    void swallowsTheSecondPressOfASlowDoubleClick() {
        const auto panel = MakePanel();
        m_fixture->service->ForgetRequests();
        CTaskManItem* card = Card(*panel, u"Photos"_s);
        ClickAction(card, u"Start Now"_s);
        m_fixture->reader.StepAll(); // it means "Pause" by now
        QTest::mouseDClick(card->childAt(card->ActionRect(1).center()), Qt::LeftButton);
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service.RequestLines(), QStringList{u"GET /schedule/startnow?%7B1%7D"_s});
    }

    void aCardAndItsSummaryCommandOnce() {
        const auto panel = MakePanel();
        m_fixture->service->ForgetRequests();
        m_fixture->prompts.ExpectQuestion(AskToCancel, true);
        ClickAction(Card(*panel, u"Photos"_s), u"Cancel Task"_s); // sent, and not answered yet
        panel->ToggleCard(*Card(*panel, u"Photos"_s));
        while (m_fixture->reader.Step(Lane::Databases))
            ;
        QVERIFY(m_fixture->frame.Captions().contains(u"Start Now"_s));
        m_fixture->frame.Click(u"Cancel Task"_s);
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service.RequestLines(), QStringList{u"GET /schedule/deletetask?%7B1%7D"_s});
    }

    void asksBeforeItDeletes() {
        const auto panel = MakePanel();
        m_fixture->service->ForgetRequests();
        m_fixture->prompts.ExpectQuestion(AskToCancel, false);
        ClickAction(Card(*panel, u"Photos"_s), u"Cancel Task"_s);
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service.RequestLines(), QStringList());

        m_fixture->prompts.ExpectQuestion(AskToCancel, true);
        ClickAction(Card(*panel, u"Photos"_s), u"Cancel Task"_s);
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service.RequestLines(), QStringList{u"GET /schedule/deletetask?%7B1%7D"_s});
        QCOMPARE(Titles(*panel), QStringList{u"Mail"_s});
    }

    void keepsItsCardsWhenTheReadFails() {
        const auto panel = MakePanel();
        const QString usual = m_fixture->frame.StatusText();
        QVERIFY(usual.startsWith("View tasks."_L1));
        m_fixture->service->SetFault(devservice::DatabaseFault::Garbage);
        m_fixture->Refresh(*panel);
        QCOMPARE(Titles(*panel), QStringList({u"Mail"_s, u"Photos"_s}));
        QVERIFY(m_fixture->frame.StatusText() != usual);

        m_fixture->service->ClearFaults();
        m_fixture->service->PutTask(MakeTask("{5}", "New"));
        m_fixture->Refresh(*panel);
        QCOMPARE(Titles(*panel), QStringList({u"Mail"_s, u"New"_s, u"Photos"_s}));
        QCOMPARE(m_fixture->frame.StatusText(), usual);
    }

    void sharesACardBetweenTasksOfOneName() {
        const auto panel = MakePanel();
        m_fixture->service->PutTask(MakeTask("{9}", "photos"));
        m_fixture->Refresh(*panel);
        QCOMPARE(Titles(*panel), QStringList({u"Mail"_s, u"Photos"_s}));
        QCOMPARE(Card(*panel, u"Photos"_s)->TaskId(), u"{1}"_s);
        m_fixture->service->RemoveTask("{1}");
        m_fixture->Refresh(*panel);
        QCOMPARE(Card(*panel, u"Photos"_s)->TaskId(), u"{9}"_s);
    }

    void deletesNothingWhenTheCardHasPassedOn() {
        const auto panel = MakePanel();
        m_fixture->service->PutTask(MakeTask("{9}", "photos"));
        m_fixture->prompts.ExpectQuestion(AskToCancel, true);
        m_fixture->prompts.Hold();
        ClickAction(Card(*panel, u"Photos"_s), u"Cancel Task"_s);
        m_fixture->service->RemoveTask("{1}");
        m_fixture->Refresh(*panel);
        m_fixture->service->ForgetRequests();
        m_fixture->prompts.ExpectMessage(u"The task is no longer there."_s);
        m_fixture->prompts.Release();
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service.RequestLines(), QStringList());
    }

    void findsTasksThatItHasNoRoomFor() {
        std::vector<devservice::Task> tasks;
        for (int number = 1; number <= 130; ++number)
            tasks.push_back(
                MakeTask("{t" + std::to_string(number) + '}', "Task no. " + std::to_string(number)));
        m_fixture->service->PutTasks(tasks);
        const auto panel = MakePanel();
        const auto* notice = panel->findChild<NoticeLine*>();
        const QString line = u"32 more tasks are not shown. Find a task by its name to see it here."_s;
        QCOMPARE(Titles(*panel).size(), 100);
        QCOMPARE(notice->Text(), line);
        QString hidden;
        for (int number = 1; hidden.isEmpty(); ++number)
            if (!panel->FindCard(u"Task no. %1"_s.arg(number)))
                hidden = u"Task no. %1"_s.arg(number);

        auto* find = panel->findChild<FindBar*>();
        QVERIFY(find->isVisible());
        auto* words = find->findChild<QLineEdit*>();
        QTest::keyClicks(words, hidden.toUpper());
        QVERIFY(Titles(*panel).contains(hidden));
        QCOMPARE(notice->Text(), QString());
        m_fixture->Refresh(*panel);
        QCOMPARE(Titles(*panel).filter(hidden), Titles(*panel)); // a refresh brings no others
        words->setText(u"Task no."_s);
        QCOMPARE(notice->Text(), u"30 more tasks are not shown. Find a task by its name to see it here."_s);

        QTest::keyClick(words, Qt::Key_Escape);
        QCOMPARE(Titles(*panel).size(), 100);
        QCOMPARE(notice->Text(), line);
        QVERIFY(find->isVisible()); // what the line tells of is still to be found
    }

    void showsHowFarATaskHasCome() {
        std::vector<devservice::SubTask> work{
            devservice::MakeSubTask(1, "PUT", "a", 2048, SubTaskState::Done),
            devservice::MakeSubTask(2, "PUT", "b", 2048, SubTaskState::Running),
            devservice::MakeSubTask(3, "PUT", "c", 2048)};
        m_fixture->service->PutSubTasks("{2}", work);
        const auto panel = MakePanel();
        const CTaskManItem* mail = Card(*panel, u"Mail"_s);
        const auto refresh = [&] { m_fixture->Refresh(*panel); };
        QCOMPARE(mail->StatusText(), u"0.000 KB transferred"_s);
        QCOMPARE(mail->Progress(), 333);
        work[1].done = 1024;
        m_fixture->service->PutSubTasks("{2}", work);
        refresh();
        QCOMPARE(mail->StatusText(), u"1.000 KB, 1.000 KB (00:00:00) Remaining"_s);
        m_fixture->service->SetSubTaskState("{2}", 2, SubTaskState::Done);
        refresh();
        QCOMPARE(mail->StatusText(), u"Running"_s);
        QCOMPARE(mail->Progress(), 666);

        m_fixture->service->SetTaskState("{2}", TaskState::Paused);
        refresh();
        QCOMPARE(mail->StatusText(), u"Next Run: 2025-03-04 21:00:00"_s);
        QCOMPARE(mail->Progress(), 0);

        devservice::Task unplanned = MakeTask("{2}", "Mail", "advbackup");
        unplanned.nextRun = {};
        m_fixture->service->PutTask(unplanned);
        refresh();
        QCOMPARE(mail->StatusText(), u"Next Run: not scheduled"_s);
    }

private:
    std::unique_ptr<CTaskListPanel> MakePanel(TaskFilter filter = TaskFilter::MyTasks) {
        auto panel = std::make_unique<CTaskListPanel>(m_fixture->console, filter);
        panel->resize(760, 560);
        m_fixture->Open(*panel);
        return panel;
    }

    CTaskManItem* Card(const CTaskListPanel& panel, const QString& title) {
        return static_cast<CTaskManItem*>(panel.FindCard(title));
    }

    QStringList Titles(const CTaskListPanel& panel) {
        QStringList titles;
        for (int card = 0; card < panel.CardCount(); ++card)
            titles << panel.CardAt(card)->Title();
        titles.sort();
        return titles;
    }

    std::unique_ptr<PageFixture<>> m_fixture;
};

BTASK_TEST(TaskListPanelTest);

#include "TaskListPanelTest.moc"
