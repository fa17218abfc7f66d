#include "TaskFixture.h"
#include "support/TestMain.h"
#include "taskman/TaskManSummary.h"

using namespace Qt::Literals::StringLiterals;
using devservice::MakeSubTask;
using devservice::MakeTask;

namespace {

const QString AskToCancel =
    u"Do you really want to cancel the task?\n\"Photos\" will be deleted for good. Its files stay."_s;

} // namespace

class TaskSummaryTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_fixture->service->PutTask(MakeTask("{1}", "Photos"));
    }

    void cleanup() { m_fixture.reset(); }

    void showsTheState_data() {
        const Columns<TaskState, bool, QString, QStringList> row("state", "starts", "status", "buttons");
        const QStringList waiting{u"Start Now"_s, u"Pause"_s, u"Cancel Task"_s, u"Refresh"_s};
        row("pending", TaskState::Pending, true, "Pending", waiting);
        row("failed", TaskState::Failed, true, "Failed", waiting);
        row("paused", TaskState::Paused, false, "Paused",
            {u"Start Now"_s, u"Resume"_s, u"Cancel Task"_s, u"Refresh"_s});
        row("completed", TaskState::Completed, true, "Completed", {u"Refresh"_s});
        row("held: the row stays as it was", TaskState::Held, true, {}, {});
    }

    void showsTheState() {
        const auto [state, hasNextStart] = Fetched<TaskState, bool>();
        m_fixture->service->SetTaskState("{1}", state);
        const auto summary = MakeSummary();
        QCOMPARE(Detail(*summary, u"Task Type"_s), u"Mirrored Backup"_s);
        QTEST(Detail(*summary, u"Status"_s), "status");
        QTEST(m_fixture->frame.Captions(), "buttons");
        QCOMPARE(Detail(*summary, u"Next Start Time"_s) != "NA"_L1, hasNextStart);
    }

    void saysThatItIsReading() {
        CTaskSummary summary(m_fixture->console, {{u"{1}"_s, u"Photos"_s}, u"BACKUP"_s}, TaskManSummary());
        summary.Activate();
        QCOMPARE(Detail(summary, u"Status"_s), u"Reading..."_s);
        m_fixture->reader.StepAll();
        QCOMPARE(Detail(summary, u"Status"_s), u"Pending"_s);
    }

    void countsSubTasks() {
        m_fixture->service->SetTaskState("{1}", TaskState::Running);
        m_fixture->service->PutSubTasks("{1}",
                                        {MakeSubTask(1, "PUT", "a", 10, SubTaskState::Done),
                                         MakeSubTask(2, "PUT", "b", 10, SubTaskState::PendingRetry),
                                         MakeSubTask(3, "PUT", "c", 10), MakeSubTask(4, "PUT", "d", 10)});
        const auto summary = MakeSummary();
        QCOMPARE(Detail(*summary, u"Pending Subtasks"_s), u"2 of 4 total sub-tasks"_s);
        QCOMPARE(Detail(*summary, u"Completed Subtasks"_s), u"1"_s);
        QCOMPARE(Detail(*summary, u"Pending Retry Subtasks"_s), u"1"_s);
        QVERIFY(Detail(*summary, u"Status"_s).startsWith("#Progress:2 4@@2 of 4 processed, "_L1));
    }

    void sendsACommandOnce() {
        const auto summary = MakeSummary();
        m_fixture->service->ForgetRequests();
        m_fixture->frame.Click(u"Pause"_s);
        m_fixture->frame.Click(u"Pause"_s);
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service.RequestLines(), QStringList{u"GET /schedule/pausetask?%7B1%7D"_s});
        QVERIFY(m_fixture->frame.Captions().contains(u"Resume"_s));
    }

    void asksBeforeItDeletes() {
        const auto summary = MakeSummary();
        m_fixture->service->ForgetRequests();
        m_fixture->prompts.ExpectQuestion(AskToCancel, false);
        m_fixture->Click(u"Cancel Task"_s);
        QCOMPARE(m_fixture->service.RequestLines(), QStringList());
        m_fixture->prompts.ExpectQuestion(AskToCancel, true);
        m_fixture->Click(u"Cancel Task"_s);
        QCOMPARE(m_fixture->service.RequestLines(), QStringList{u"GET /schedule/deletetask?%7B1%7D"_s});
    }

    void leavesTheToolbarOfTheNextPageAlone() {
        const auto summary = MakeSummary();
        m_fixture->service->SetTaskState("{1}", TaskState::Paused);
        summary->Reload();
        summary->Deactivate();
        m_fixture->frame.SetToolbar(*summary, {{u"Of the next page"_s}});
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->frame.Captions(), QStringList{u"Of the next page"_s});
    }

private:
    std::unique_ptr<CTaskSummary> MakeSummary() {
        TaskRow task{{u"{1}"_s, u"Photos"_s}, u"BACKUP"_s};
        auto summary = std::make_unique<CTaskSummary>(m_fixture->console, task, TaskManSummary());
        m_fixture->Open(*summary);
        return summary;
    }

    QString Detail(const CTaskSummary& summary, const QString& info) {
        const auto& rows = summary.findChild<CBrenListCtrl*>()->Rows();
        for (int row = 0; row < rows.rowCount(); ++row)
            if (rows.CellText(row, 0) == info)
                return rows.CellText(row, 1);
        return u"no such row"_s;
    }

    std::unique_ptr<PageFixture<>> m_fixture;
};

BTASK_TEST(TaskSummaryTest);

#include "TaskSummaryTest.moc"
