// Labels: threads painting
#include "TaskFixture.h"
#include "lanes/ThreadReader.h"
#include "list/RecordPanel.h"
#include "support/TestMain.h"
#include "taskman/CompletedTable.h"
#include "taskman/HistoryTable.h"
#include "taskman/RunningTable.h"
#include "taskman/SubTaskTable.h"
#include "taskman/TaskListPanel.h"
#include "taskman/TaskManItem.h"
#include "taskman/TaskManSummary.h"
#include "taskman/TraceTable.h"

#include <QTestEventLoop>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeSubTask;
using devservice::MakeTask;

namespace {

constexpr int Restarts = 100;
const QString AskToCancel =
    u"Do you really want to cancel the task?\n\"Photos\" will be deleted for good. Its files stay."_s;

TaskRow Photos() {
    TaskRow task;
    task.id = u"{1}"_s;
    task.title = u"Photos"_s;
    return task;
}

/// Every view of the task manager, all of them open.
struct AllViews {
    explicit AllViews(const Console& console)
        : tasks(console, TaskFilter::MyTasks), summary(console, Photos(), TaskManSummary()),
          running(console, RunningTable(console.counters, Photos())),
          pending(console, SubTaskTable(Photos(), SubtaskView::Pending)),
          retry(console, SubTaskTable(Photos(), SubtaskView::PendingRetry)),
          history(console, HistoryTable(Photos())), audit(console, TraceTable(Photos())),
          system(console, SystemActivityTable(console.counters)), completed(console, CompletedTable()) {
        for (CBrenPanel* view : All())
            view->Activate();
    }

    std::vector<CBrenPanel*> All() {
        return {&tasks, &summary, &running, &pending, &retry, &history, &audit, &system, &completed};
    }
    void Refresh() {
        for (CBrenPanel* view : All())
            view->Reload();
    }

    CTaskListPanel tasks;
    CTaskSummary summary;
    RecordPanel running;
    RecordPanel pending;
    RecordPanel retry;
    RecordPanel history;
    RecordPanel audit;
    RecordPanel system;
    RecordPanel completed;
};

/// True once all reads that were asked for before have been shown.
bool WaitForReads(Reader& reader) {
    QTestEventLoop loop;
    reader.Submit({Lane::Databases, [] { return ReadPriority::Hidden; }, std::stop_source(),
                   [](std::stop_token) {}, [&loop] { loop.exitLoop(); }});
    loop.enterLoopMSecs(20'000);
    return !loop.timeout();
}

/// The table's words in one column, from top to bottom.
QString ColumnOf(const CBrenPanel& view, int column) {
    return TableHand(view).Column(column).join(u' ');
}

int RowsOf(const CBrenPanel& view) {
    return TableHand(view)->Rows().rowCount();
}

/// What the service does in a round: work that differs from the round before in every view.
void Change(devservice::DevService& service, int round) {
    const std::string number = std::to_string(round);
    service.SetTaskState("{1}", round % 2 == 0 ? TaskState::Running : TaskState::Paused);
    std::vector<devservice::SubTask> work{
        MakeSubTask(1, "PUT", "run" + number, 100, SubTaskState::Running),
        MakeSubTask(2, "PUT", "retry" + number, 100, SubTaskState::PendingRetry)};
    for (int waiting = 0; waiting <= round % 7; ++waiting)
        work.push_back(MakeSubTask(3 + waiting, "PUT", "wait" + number, 100));
    service.PutSubTasks("{1}", work);
    service.PutTask(MakeTask("{2}", "Old" + number, "backup", TaskState::Completed));
    service.AddAuditRows({{0, devservice::TaskTrace("{1}", "trace" + number), service.Now()}});
    service.Execute(service.DatabaseFile(devservice::Database::ProcessLog),
                    "INSERT INTO TaskProcessLog VALUES(NULL,'{1}','','','run',1,0,1)");
}

void CompareViews(AllViews& views, int round) {
    const QString number = QString::number(round);
    const int waiting = round % 7 + 1;
    QCOMPARE(views.tasks.CardCount(), 1);
    QCOMPARE(views.tasks.CardAt(0)->StatusState(),
             int(round % 2 == 0 ? TaskState::Running : TaskState::Paused));
    QCOMPARE(TableHand(views.summary).Column(1).at(3),
             u"%1 of %2 total sub-tasks"_s.arg(waiting + 1).arg(waiting + 2));
    QCOMPARE(ColumnOf(views.running, 1), u"run"_s + number);
    QCOMPARE(ColumnOf(views.system, 0), u"Photos: run"_s + number);
    QCOMPARE(ColumnOf(views.retry, 2), u"retry"_s + number);
    QCOMPARE(TableHand(views.pending).Column(2), QStringList(waiting, u"wait"_s + number));
    QCOMPARE(RowsOf(views.history), round + 1);
    QCOMPARE(RowsOf(views.audit), round + 1);
    QCOMPARE(ColumnOf(views.completed, 0), u"Old"_s + number);
}

/// Puts another file in the database's place, as a restored backup of it would be.
void Replace(devservice::DevService& service, const std::filesystem::path& file, const std::string& sql) {
    std::filesystem::path other = file;
    other += ".other";
    std::filesystem::copy_file(file, other);
    service.Execute(other, sql);
    std::filesystem::rename(other, file);
}

} // namespace

/// A list with one task whose card is expanded or not.
struct OneCard {
    explicit OneCard(bool expanded) : list(fixture.console, TaskFilter::MyTasks) {
        fixture.service->PutTask(MakeTask("{1}", "Photos"));
        list.resize(760, 560);
        fixture.Open(list);
        if (expanded)
            list.ToggleCard(*list.CardAt(0));
    }

    /// The service loses the task, and the list hears of it first.
    void Lose() {
        fixture.service->RemoveTask("{1}");
        list.Reload();
        fixture.service->ForgetRequests();
        while (fixture.reader.Step(Lane::Databases)) {
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(list.CardCount(), 0);
    }

    PageFixture<> fixture;
    CTaskListPanel list;
};

class TaskFaultsTest : public QObject {
    Q_OBJECT

private slots:
    void everyViewOutlivesRestarts() {
        PageFixture<ThreadReader> fixture;
        devservice::DevService& service = fixture.service.Service();
        service.PutTask(MakeTask("{1}", "Photos"));
        AllViews views(fixture.console);
        for (int round = 0; round < Restarts; ++round) {
            views.Refresh(); // still read while the service stops
            service.Stop();
            if (round % 10 == 5) { // the databases are still there, what runs is not
                views.Refresh();
                QVERIFY(WaitForReads(fixture.reader));
                QCOMPARE(TableHand(views.running)->TextWithoutRows(), u"No subtask is being processed."_s);
                QCOMPARE(TableHand(views.system)->TextWithoutRows(), u"System is idle."_s);
                QCOMPARE(ColumnOf(views.completed, 0), u"Old"_s + QString::number(round - 1));
            }
            service.Start();
            Change(service, round);
            views.Refresh();
            QVERIFY(WaitForReads(fixture.reader));
            CompareViews(views, round);
            if (QTest::currentTestFailed())
                return;
        }
    }

    void readsADatabaseThatWasReplaced() {
        PageFixture<> fixture;
        devservice::DevService& service = fixture.service.Service();
        service.PutTask(MakeTask("{1}", "Photos"));
        AllViews views(fixture.console);
        Change(service, 0);
        views.Refresh();
        fixture.reader.StepAll();
        CompareViews(views, 0);

        service.Stop(); // which keeps some of the files open
        Replace(service, service.DatabaseFile(devservice::Database::Scheduler),
                "UPDATE Scheduler SET TaskName='Pictures' WHERE TaskId='{1}'; DELETE FROM Scheduler WHERE "
                "TaskId='{2}'");
        Replace(service, service.SubTaskFile("{1}"), "UPDATE SubTaskDBWorker SET Parameter1='replaced'");
        Replace(service, service.DatabaseFile(devservice::Database::ProcessLog),
                "DELETE FROM TaskProcessLog");
        Replace(service, service.DatabaseFile(devservice::Database::AuditTrace), "DELETE FROM AuditTrace");
        views.Refresh();
        fixture.reader.StepAll();
        QVERIFY(views.tasks.FindCard(u"Pictures"_s));
        QCOMPARE(views.tasks.CardCount(), 1);
        QCOMPARE(ColumnOf(views.pending, 2), u"replaced"_s);
        QCOMPARE(ColumnOf(views.retry, 2), u"replaced"_s);
        QCOMPARE(TableHand(views.history)->TextWithoutRows(), u"No History Record Found"_s);
        QCOMPARE(TableHand(views.audit)->TextWithoutRows(), u"No Record Found."_s);
        QCOMPARE(TableHand(views.completed)->TextWithoutRows(), u"No task found."_s);
    }

    void aTaskMayGoWhileItsCardIsExpanded() {
        OneCard one(true);
        one.fixture.reader.StepAll();
        QVERIFY(one.fixture.frame.Captions().contains("Start Now"_L1));
        one.fixture.frame.Click(u"Refresh"_s); // the summary's read is under way
        one.Lose();
        one.fixture.reader.StepAll();
        QVERIFY(!one.list.ExpandedCard());
        QCOMPARE(one.fixture.frame.Captions(), QStringList{u"Refresh..."_s});
        QVERIFY(one.fixture.frame.StatusText().startsWith("View tasks."_L1));

        one.fixture.service->PutTask(MakeTask("{1}", "Photos"));
        one.fixture.Refresh(one.list);
        QCOMPARE(one.list.CardCount(), 1);
        QVERIFY(!one.list.CardAt(0)->IsExpanded());
    }

    void aTaskMayGoDuringItsQuestion() {
        for (const bool expanded : {false, true}) { // asked by the card or by its summary
            OneCard one(expanded);
            one.fixture.reader.StepAll();
            one.fixture.prompts.ExpectQuestion(AskToCancel, true);
            one.fixture.prompts.Hold();
            if (expanded)
                one.fixture.frame.Click(u"Cancel Task"_s);
            else
                ClickAction(static_cast<CTaskItem*>(one.list.CardAt(0)), u"Cancel Task"_s);
            QVERIFY(one.fixture.prompts.IsPlayed());
            one.Lose();
            one.fixture.prompts.ExpectMessage(u"The task is no longer there."_s);
            one.fixture.prompts.Release();
            one.fixture.reader.StepAll();
            QCOMPARE(one.fixture.service.RequestLines(), QStringList());
        }
    }

    void aTaskMayGoDuringItsDeletion() {
        OneCard one(false);
        one.fixture.prompts.ExpectQuestion(AskToCancel, true);
        ClickAction(static_cast<CTaskItem*>(one.list.CardAt(0)), u"Cancel Task"_s);
        QCOMPARE(one.fixture.prompts.asked.title, u"Photos"_s);
        one.Lose();
        one.fixture.reader.StepAll(); // no box: there is nothing left to do
        QCOMPARE(one.fixture.service.RequestLines(), QStringList{u"GET /schedule/deletetask?%7B1%7D"_s});
    }

    void aTaskMayGoWhileItsSubTasksAreDeleted() {
        PageFixture<> fixture;
        fixture.service->PutTask(MakeTask("{1}", "Photos"));
        fixture.service->PutSubTasks("{1}", {MakeSubTask(1, "PUT", "a"), MakeSubTask(2, "PUT", "b")});
        RecordPanel panel(fixture.console, SubTaskTable(Photos(), SubtaskView::Pending));
        panel.resize(820, 400);
        fixture.Open(panel);
        fixture.prompts.ExpectQuestion(u"Do you really want to remove selected sub-tasks?\n2 rows"_s, true);
        fixture.prompts.ExpectMessage(u"Failed to delete the subtask"_s);
        TableHand(panel).Select({0, 1}, 1);
        TableHand(panel).Click(1, 5);
        QCoreApplication::sendPostedEvents();
        fixture.service->RemoveTask("{1}");
        fixture.Refresh(panel);
        QVERIFY(fixture.prompts.IsPlayed());
        panel.Deactivate();
        fixture.Open(panel);
        QVERIFY(fixture.frame.StatusText().startsWith("The database does not exist"_L1));
    }
};

BTASK_TEST(TaskFaultsTest);

#include "TaskFaultsTest.moc"
