#include "taskman/TaskSummary.h"
#include "support/NotingFrame.h"
#include "support/ScriptedPrompts.h"
#include "support/ServiceFixture.h"
#include "support/SteppingReader.h"
#include "support/TestMain.h"
#include "ui/BrenListCtrl.h"
#include "ui/Console.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeSubTask;
using devservice::MakeTask;

class TaskSummaryTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void showsTheState_data();
    void showsTheState();
    void countsSubTasks();
    void sendsACommandOnce();
    void asksBeforeItDeletes();
    void leavesTheToolbarOfTheNextPageAlone();

private:
    std::unique_ptr<CTaskSummary> MakeSummary();
    QString Detail(const CTaskSummary& summary, const QString& info);

    std::unique_ptr<ServiceFixture> m_fixture;
    ServiceClient m_client;
    std::unique_ptr<LiveCounters> m_counters;
    std::unique_ptr<ScriptedPrompts> m_prompts;
    std::unique_ptr<SteppingReader> m_reader;
    std::unique_ptr<NotingFrame> m_frame;
    std::unique_ptr<Console> m_console;
};

void TaskSummaryTest::init() {
    m_fixture = std::make_unique<ServiceFixture>();
    m_fixture->Service().PutTask(MakeTask("{1}", "Photos"));
    m_counters = std::make_unique<LiveCounters>();
    m_prompts = std::make_unique<ScriptedPrompts>();
    m_reader = std::make_unique<SteppingReader>();
    m_frame = std::make_unique<NotingFrame>();
    m_console = std::make_unique<Console>(Console{m_client, *m_counters, *m_prompts, *m_reader, *m_frame});
}

void TaskSummaryTest::cleanup() {
    m_console.reset();
    m_fixture.reset();
}

std::unique_ptr<CTaskSummary> TaskSummaryTest::MakeSummary() {
    auto summary = std::make_unique<CTaskSummary>(*m_console, u"{1}"_s, u"BACKUP"_s);
    summary->Activate();
    m_reader->StepAll();
    return summary;
}

QString TaskSummaryTest::Detail(const CTaskSummary& summary, const QString& info) {
    const auto& rows = summary.findChild<CBrenListCtrl*>()->Rows();
    for (int row = 0; row < rows.rowCount(); ++row) {
        if (rows.CellText(row, 0) == info)
            return rows.CellText(row, 1).toString();
    }
    return u"no such row"_s;
}

void TaskSummaryTest::showsTheState_data() {
    QTest::addColumn<TaskState>("state");
    QTest::addColumn<QString>("status");
    QTest::addColumn<bool>("hasNextStart");
    QTest::addColumn<QStringList>("buttons");
    const QStringList waiting{u"Start Now"_s, u"Pause"_s, u"Cancel Task"_s, u"Refresh"_s};
    QTest::newRow("pending") << TaskState::Pending << u"Pending"_s << true << waiting;
    QTest::newRow("failed") << TaskState::Failed << u"Failed"_s << true << waiting;
    QTest::newRow("paused") << TaskState::Paused << u"Paused"_s << false
                            << QStringList{u"Start Now"_s, u"Resume"_s, u"Cancel Task"_s, u"Refresh"_s};
    QTest::newRow("completed") << TaskState::Completed << u"Completed"_s << true << QStringList{u"Refresh"_s};
    QTest::newRow("held: the row stays as it was") << TaskState::Held << QString() << true << QStringList();
}

void TaskSummaryTest::showsTheState() {
    QFETCH(TaskState, state);
    QFETCH(bool, hasNextStart);
    m_fixture->Service().SetTaskState("{1}", state);
    const auto summary = MakeSummary();
    QCOMPARE(Detail(*summary, u"Task Type"_s), u"Mirrored Backup"_s);
    QTEST(Detail(*summary, u"Status"_s), "status");
    QTEST(m_frame->Captions(), "buttons");
    QCOMPARE(Detail(*summary, u"Next Start Time"_s) != "NA"_L1, hasNextStart);
}

void TaskSummaryTest::countsSubTasks() {
    m_fixture->Service().SetTaskState("{1}", TaskState::Running);
    m_fixture->Service().PutSubTasks("{1}", {MakeSubTask(1, "PUT", "a", 10, SubTaskState::Done),
                                             MakeSubTask(2, "PUT", "b", 10, SubTaskState::PendingRetry),
                                             MakeSubTask(3, "PUT", "c", 10), MakeSubTask(4, "PUT", "d", 10)});
    const auto summary = MakeSummary();
    QCOMPARE(Detail(*summary, u"Pending Subtasks"_s), u"2 of 4 total sub-tasks"_s);
    QCOMPARE(Detail(*summary, u"Completed Subtasks"_s), u"1"_s);
    QCOMPARE(Detail(*summary, u"Pending Retry Subtasks"_s), u"1"_s);
    QVERIFY(Detail(*summary, u"Status"_s).startsWith("#Progress:2 4@@2 of 4 processed, "_L1));
}

void TaskSummaryTest::sendsACommandOnce() {
    const auto summary = MakeSummary();
    m_fixture->Service().ForgetRequests();
    m_frame->Click(u"Pause"_s);
    m_frame->Click(u"Pause"_s);
    summary->OnCommand(8024); // as a click that was on its way
    m_reader->StepAll();
    QCOMPARE(m_fixture->RequestLines(), QStringList{u"GET /schedule/pausetask?%7B1%7D"_s});
    QVERIFY(m_frame->Captions().contains(u"Resume"_s));
}

void TaskSummaryTest::asksBeforeItDeletes() {
    const auto summary = MakeSummary();
    m_fixture->Service().ForgetRequests();
    m_prompts->ExpectQuestion(u"Do you really want to cancel the task?"_s, false);
    m_frame->Click(u"Cancel Task"_s);
    m_reader->StepAll();
    QCOMPARE(m_fixture->RequestLines(), QStringList());
    m_prompts->ExpectQuestion(u"Do you really want to cancel the task?"_s, true);
    m_frame->Click(u"Cancel Task"_s);
    m_reader->StepAll();
    QCOMPARE(m_fixture->RequestLines(), QStringList{u"GET /schedule/deletetask?%7B1%7D"_s});
}

void TaskSummaryTest::leavesTheToolbarOfTheNextPageAlone() {
    const auto summary = MakeSummary();
    m_fixture->Service().SetTaskState("{1}", TaskState::Paused);
    summary->OnCommand(Command::Refresh);
    summary->Deactivate();
    m_frame->SetToolbar(*summary, {{u"Of the next page"_s, 1}});
    m_reader->StepAll();
    QCOMPARE(m_frame->Captions(), QStringList{u"Of the next page"_s});
}

BTASK_TEST(TaskSummaryTest);

#include "TaskSummaryTest.moc"
