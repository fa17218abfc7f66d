#include "TaskFixture.h"
#include "list/RecordPanel.h"
#include "stores/AuditTraceStore.h"
#include "stores/TaskState.h"
#include "support/TestMain.h"
#include "taskman/TaskList.h"
#include "taskman/TraceTable.h"

using namespace Qt::Literals::StringLiterals;
using devservice::MakeTime;
using devservice::TaskTrace;

namespace {

const QString AskAll = u"Do you really want to delete all trace items of this task?\nPhoto library"_s;
const QString DeletionFailed = u"Failed to delete the trace items"_s;

TaskRow TaskOf(const QString& id) {
    TaskRow task;
    task.id = id;
    task.title = u"Photo library"_s;
    return task;
}

int StoredTraces(const QString& key) {
    int count = 0;
    AuditTraceStore().EnumTaskTraces(key, [&count](const AuditRecord&) { return ++count > 0; });
    return count;
}

} // namespace

class TaskAuditTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_fixture->service->AddAuditRows({{0, TaskTrace("{1}", "oldest"), MakeTime(2025, 3, 4, 9, 1)},
                                          {1, TaskTrace("{1}", "a $ sign"), MakeTime(2025, 3, 4, 9, 2)},
                                          {7, "about {1}", MakeTime(2025, 3, 4, 9, 3)},
                                          {2, TaskTrace("{1}", "went wrong"), MakeTime(2025, 3, 4, 9, 4)},
                                          {-1, "$${1}", MakeTime(2025, 3, 4, 9, 5)},
                                          {0, TaskTrace("{2}", "another's"), MakeTime(2025, 3, 4, 9, 6)}});
    }

    void cleanup() { m_fixture.reset(); }

    void listsTheTraceNewestFirst() {
        RecordPanel audit(m_fixture->console, TraceTable(TaskOf(u"{1}"_s)));
        audit.Activate();
        const TableHand table(audit);
        QCOMPARE(table->TextWithoutRows(), u"Querying, please wait..."_s);
        QCOMPARE(m_fixture->frame.Captions(),
                 QStringList{u"Refresh"_s}); // there is nothing to copy or delete yet
        m_fixture->reader.StepAll();
        // An unknown level keeps the colour of the row before, and a key that does not end takes all.
        QCOMPARE(table.Column(0),
                 QStringList({{}, u"#COLOR:RED"_s, u"#COLOR:RED"_s, u"#COLOR:YELLOW"_s, u"#COLOR:GREEN"_s}));
        QCOMPARE(table.Column(2),
                 QStringList({{}, u"went wrong"_s, u"about {1}"_s, u"a $ sign"_s, u"oldest"_s}));
        QCOMPARE(table.Cells(1).at(1), u"2025-03-04 09:04:00"_s);
        QCOMPARE(m_fixture->frame.StatusText(), u"View audit trace of activities related to this task."_s);
        QCOMPARE(m_fixture->frame.Captions(), QStringList({u"Refresh"_s, u"Copy All"_s, u"Delete All"_s}));
        QCOMPARE(TableHand(*Open(u"{3}"_s))->TextWithoutRows(), u"No Record Found."_s);
    }

    void aRunningTasksTraceSaysSinceWhenItStands() {
        TaskRow task = TaskOf(u"{1}"_s);
        task.state = TaskState::Running;
        RecordPanel audit(m_fixture->console, TraceTable(task));
        m_fixture->Open(audit);
        QVERIFY(m_fixture->frame.StatusText().contains("Read at "_L1));
        m_fixture->service->AddAuditRows({{0, TaskTrace("{1}", "newest"), MakeTime(2025, 3, 4, 9, 8)}});
        audit.Turn(TraceTable(task)); // nothing has changed but what is being done
        m_fixture->reader.StepAll();
        QCOMPARE(TableHand(audit)->Rows().rowCount(), 5);
        task.state = TaskState::Pending;
        audit.Turn(TraceTable(task));
        m_fixture->reader.StepAll();
        QCOMPARE(TableHand(audit)->Rows().rowCount(), 6);
        QVERIFY(!m_fixture->frame.StatusText().contains("Read at "_L1));
    }

    void copiesAllRows() {
        const auto audit = Open();
        m_fixture->prompts.ExpectMessage(u"All trace items have been copied to clipboard"_s);
        m_fixture->frame.Click(u"Copy All"_s);
        m_fixture->Click(u"Copy All"_s);
        QCOMPARE(m_fixture->prompts.clipboardText, u"    2025-03-04 09:05:00    \r\n"
                                                   "Error    2025-03-04 09:04:00    went wrong\r\n"
                                                   "Error    2025-03-04 09:03:00    about {1}\r\n"
                                                   "Warning    2025-03-04 09:02:00    a $ sign\r\n"
                                                   "Information    2025-03-04 09:01:00    oldest"_s);
        QVERIFY(m_fixture->frame.Captions().contains("Copy All"_L1));
    }

    void deletesAllAfterAQuestion() {
        const auto audit = Open();
        const TableHand table(*audit);
        m_fixture->prompts.ExpectQuestion(AskAll, false);
        m_fixture->Click(u"Delete All"_s);
        QCOMPARE(table->Rows().rowCount(), 5);
        QCOMPARE(StoredTraces(u"{1}"_s), 5);

        m_fixture->prompts.ExpectQuestion(AskAll, true);
        m_fixture->frame.Click(u"Delete All"_s);
        m_fixture->Click(u"Delete All"_s);
        QCOMPARE(table->TextWithoutRows(), u"No Record Found."_s);
        QCOMPARE(StoredTraces(u"{1}"_s), 0);
        QCOMPARE(StoredTraces(u"{2}"_s), 1);
        QCOMPARE(m_fixture->frame.Captions(), QStringList{u"Refresh"_s});
    }

    void refusesAKeyThatMatchesOthers() {
        m_fixture->service->AddAuditRows({{0, "about {}", MakeTime(2025, 3, 4, 9, 7)}});
        for (const QString& key : {QString(), u"%"_s, u"{%}"_s, u"{}"_s}) {
            const auto audit = Open(key);
            const int rows = TableHand(*audit)->Rows().rowCount();
            QVERIFY(rows > 0);
            m_fixture->prompts.ExpectQuestion(AskAll, true);
            m_fixture->prompts.ExpectMessage(DeletionFailed);
            m_fixture->Click(u"Delete All"_s);
            QVERIFY(m_fixture->prompts.details.last().contains("is no identifier of a task"_L1));
            QCOMPARE(TableHand(*audit)->Rows().rowCount(), rows);
            QCOMPARE(StoredTraces(u"{1}"_s), 5);
        }
    }

    void tellsAFailedDeletion() {
        const auto audit = Open();
        m_fixture->service->SetFault(devservice::DatabaseFault::Locked, devservice::Database::AuditTrace);
        m_fixture->prompts.ExpectQuestion(AskAll, true);
        m_fixture->prompts.ExpectMessage(DeletionFailed);
        m_fixture->Click(u"Delete All"_s);
        QVERIFY(m_fixture->prompts.details.last().contains("locked"_L1));
        QCOMPARE(TableHand(*audit)->Rows().rowCount(), 5);
        QVERIFY(m_fixture->frame.Captions().contains("Delete All"_L1)); // to be tried again
    }

    void cancelsTheReadBeforeItDeletes() {
        const auto audit = Open();
        m_fixture->frame.Click(u"Refresh"_s); // has not begun yet
        m_fixture->prompts.ExpectQuestion(AskAll, true);
        m_fixture->frame.Click(u"Delete All"_s);
        // A reader ends what was told to stop before it takes the next job.
        QVERIFY(m_fixture->reader.Step(Lane::Databases));
        QCOMPARE(StoredTraces(u"{1}"_s), 5);
        QVERIFY(m_fixture->reader.Step(Lane::Databases));
        QCOMPARE(StoredTraces(u"{1}"_s), 0);
        m_fixture->reader.StepAll();
        QCOMPARE(TableHand(*audit)->Rows().rowCount(), 0);
    }

    void deletesNothingOfAnotherTask() {
        const auto audit = Open();
        m_fixture->prompts.ExpectQuestion(AskAll, true);
        m_fixture->prompts.Hold();
        m_fixture->frame.Click(u"Delete All"_s);
        audit->Turn(TraceTable(TaskOf(u"{2}"_s)));
        m_fixture->prompts.ExpectMessage(u"The task is no longer there."_s);
        m_fixture->prompts.Release();
        m_fixture->reader.StepAll();
        QCOMPARE(TableHand(*audit).Column(2), QStringList{u"another's"_s});
        QCOMPARE(StoredTraces(u"{1}"_s) + StoredTraces(u"{2}"_s), 6);
        QVERIFY(m_fixture->frame.Captions().contains("Delete All"_L1));
    }

private:
    std::unique_ptr<RecordPanel> Open(const QString& id = u"{1}"_s) {
        auto audit = std::make_unique<RecordPanel>(m_fixture->console, TraceTable(TaskOf(id)));
        m_fixture->Open(*audit);
        return audit;
    }

    std::unique_ptr<PageFixture<>> m_fixture;
};

BTASK_TEST(TaskAuditTest);

#include "TaskAuditTest.moc"
