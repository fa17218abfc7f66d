#include "TaskFixture.h"
#include "devservice/LiveTraceWriter.h"
#include "list/RecordPanel.h"
#include "page/SectionLinks.h"
#include "support/TestMain.h"
#include "taskman/CompletedTable.h"
#include "taskman/HistoryTable.h"
#include "taskman/RunningTable.h"
#include "taskman/TaskList.h"

#include <QHeaderView>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeSubTask;
using devservice::MakeTask;

namespace {

TaskRow TaskOf(const QString& id) {
    TaskRow task;
    task.id = id;
    return task;
}

devservice::SubTask MakeTransfer(int number, const char* type, const char* file, int64_t done, int64_t size) {
    devservice::SubTask transfer = MakeSubTask(number, type, file, size, SubTaskState::Running);
    transfer.parameter2 = "/target";
    transfer.done = done;
    return transfer;
}

} // namespace

/// The views that only list, and the completed tasks.
class TaskViewsTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_fixture = std::make_unique<PageFixture<>>(); }

    void cleanup() { m_fixture.reset(); }

    void listsTheRunsOfATask() {
        RecordPanel history(m_fixture->console, HistoryTable(TaskOf(u"{1}"_s)));
        Open(history);
        const TableHand table(history);
        QCOMPARE(table->TextWithoutRows(), u"No History Record Found"_s);
        QCOMPARE(m_fixture->frame.StatusText(), u"View the completion status of previous backups."_s);
        QCOMPARE(m_fixture->frame.Captions(), QStringList{u"Refresh"_s});

        m_fixture->service->Execute(
            m_fixture->service->DatabaseFile(devservice::Database::ProcessLog),
            "INSERT INTO TaskProcessLog VALUES(NULL,'{1}','2025-03-01 21:00:00','2025-03-01 "
            "21:05:00','Done',9,0,9),"
            "(NULL,'{2}','2025-03-01 22:00:00','2025-03-01 22:05:00','Done',1,0,1),"
            "(NULL,'{1}','2025-03-02 21:00:00','2025-03-02 21:01:00','Paused by the user',10,2,4)");
        m_fixture->Refresh(history);
        QCOMPARE(table->Rows().rowCount(), 2);
        QCOMPARE(table.Cells(1).mid(0, 6), QStringList({u"2025-03-02 21:00:00"_s, u"2025-03-02 21:01:00"_s,
                                                        u"Paused by the user"_s, u"10"_s, u"2"_s, u"4"_s}));
        // At the window's first size all columns are seen, with their times and titles whole.
        history.resize(762, 400);
        QCoreApplication::sendPostedEvents();
        const QHeaderView* header = table->horizontalHeader();
        if (QSysInfo::productType() != "windows"_L1) // whose fonts here are wider than a user's
            QVERIFY(header->length() <= table->viewport()->width());
        const int wanted = table->fontMetrics().horizontalAdvance(table.Cells(1).at(1)) + 14;
        if (QSysInfo::productType() != "windows"_L1)
            QVERIFY(header->sectionSize(1) >= wanted && header->sectionSize(5) >= 90);
        const int reason = table->fontMetrics().horizontalAdvance(u"Completed successfully"_s) + 14;
        if (QSysInfo::productType() != "windows"_L1)
            QVERIFY(header->sectionSize(2) >= reason);
        table->SortByNext(3);
        QCOMPARE(table.Column(3), QStringList({u"9"_s, u"10"_s})); // as numbers

        QStringList times;
        m_fixture->links.showTraces = [&times](const QString& from, const QString& to) {
            times = {from, to};
        };
        table.Click(1, 6);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(times, QStringList({u"2025-03-02 21:00:00"_s, u"2025-03-02 21:01:00"_s}));
        table.Select({0, 1}, 1);
        table.Click(0, 6); // from the first to the last of them
        QCoreApplication::sendPostedEvents();
        QCOMPARE(times, QStringList({u"2025-03-01 21:00:00"_s, u"2025-03-02 21:01:00"_s}));
    }

    void listsWhatATaskProcesses() {
        m_fixture->service->PutTasks(
            {MakeTask("{1}", "Photos", "backup", TaskState::Running), MakeTask("{2}", "Mail")});
        m_fixture->service->PutSubTasks("{2}", {MakeTransfer(1, "PUT", "other", 1, 2)});
        m_fixture->service->PutSubTasks("{1}", {MakeTransfer(1, "PUT", "/a/report.doc.BODPART_3", 250, 1000),
                                                MakeTransfer(2, "GET", "C:\\a\\report.doc.BOD", 3'000, 2'000),
                                                MakeTransfer(3, "PUT", "/a/big", 1LL << 31, 1LL << 33),
                                                MakeTransfer(4, "PUT", "/b/big", 1LL << 31, 1LL << 33)});
        RecordPanel running(m_fixture->console, RunningTable(m_fixture->counters, TaskOf(u"{1}"_s)));
        Open(running);
        const TableHand table(running);
        QCOMPARE(m_fixture->frame.StatusText(),
                 u"Check the progress of your currently processing sub-tasks"_s);
        QCOMPARE(table->Rows().rowCount(), 4);
        QCOMPARE(table.Cells(0), QStringList({u"#ICON:209#@@Uploading..."_s, u"report.doc    PART_3"_s,
                                              u"/target"_s, u"#Progress:250 1000"_s}));
        QCOMPARE(table.Cells(1), QStringList({u"#ICON:210#@@Downloading..."_s, u"report.doc"_s, u"/target"_s,
                                              u"#Progress:2000 2000"_s}));
        // Two that nothing tells apart are two rows, and their counts beyond 32 bits still make a quarter.
        QCOMPARE(table.Cells(2), table.Cells(3));
        QCOMPARE(table.Cells(2).last(), u"#Progress:268435456 1073741824"_s);

        m_fixture->service->SetSubTaskState("{1}", 1, SubTaskState::Done);
        m_fixture->Refresh(running);
        QCOMPARE(table.Column(1), QStringList({u"report.doc"_s, u"big"_s, u"big"_s}));
        m_fixture->service->PutSubTasks("{1}", {});
        m_fixture->Refresh(running);
        QCOMPARE(table->TextWithoutRows(), u"No subtask is being processed."_s);
    }

    void listsWhatTheServiceDoes() {
        RecordPanel system(m_fixture->console, SystemActivityTable(m_fixture->counters));
        Open(system);
        const TableHand table(system);
        QCOMPARE(table->TextWithoutRows(), u"System is idle."_s);
        QCOMPARE(m_fixture->frame.StatusText(), u"View current system activities."_s);

        devservice::Task watched = MakeTask("{2}", "Drop Folder Sync 1");
        watched.schedule.kind = devservice::ScheduleKind::Sync;
        watched.description = "/home/mara/Sync\n/more\t/target";
        m_fixture->service->PutTasks({MakeTask("{1}", "Photos", "backup", TaskState::Running), watched});
        devservice::SubTask busy = MakeTransfer(1, "PUT", "/a/a.jpg", 1, 4);
        busy.note = "waiting for the network";
        m_fixture->service->PutSubTasks("{1}", {busy});
        m_fixture->Refresh(system);
        QCOMPARE(table->Rows().rowCount(), 2);
        QCOMPARE(table.Cells(0),
                 QStringList({u"Photos: a.jpg"_s, u"/target"_s, u"Uploading... waiting for the network"_s,
                              u"#Progress:1 4"_s}));
        QCOMPARE(table.Cells(1), QStringList({u"Drop Folder Sync 1"_s, u"/home/mara/Sync"_s,
                                              u"Monitoring changes"_s, QString()}));
        RecordPanel watcher(m_fixture->console, RunningTable(m_fixture->counters, TaskOf(u"{2}"_s)));
        Open(watcher);
        QCOMPARE(TableHand(watcher)->Rows().rowCount(), 0); // waiting is no processing
    }

    void readsAgainWhenTheCounterMoves() {
        const std::filesystem::path file = m_fixture->service.Home().toStdU16String() + u"/own.map";
        LiveTraceWriter writer(file);
        LiveTraceSnapshot snapshot;
        const auto publish = [&](quint32 changes, const QString& fileName) {
            snapshot.counters[TraceCounter::TaskTable] = changes;
            snapshot.running = {RunningSubTask()};
            snapshot.running[0].fileName = fileName;
            snapshot.running[0].taskName = u"Photos"_s;
            writer.Publish(snapshot);
        };
        publish(1, u"first"_s);
        LiveCounters counters(file);
        const Console& console = m_fixture->console;
        const Console own{console.service,     counters,     console.prompts, console.reader, console.frame,
                          console.settingNews, console.links};
        RecordPanel system(own, SystemActivityTable(counters));
        Open(system);
        const TableHand table(system);
        const auto tick = [&] {
            return QTest::qWaitFor([&] { return m_fixture->reader.Step(Lane::Databases); });
        };

        publish(1, u"second"_s); // as while nothing but octets has moved
        QVERIFY(tick());
        QCOMPARE(table.Column(0), QStringList{u"Photos: first"_s});
        publish(2, u"second"_s);
        QVERIFY(tick());
        QCOMPARE(table.Column(0), QStringList{u"Photos: second"_s});
        publish(2, u"third"_s);
        m_fixture->Refresh(system); // a user's wish is no tick
        QCOMPARE(table.Column(0), QStringList{u"Photos: third"_s});
    }

    void deletesCompletedTasks() {
        RecordPanel tasks(m_fixture->console, CompletedTable());
        Open(tasks);
        const TableHand table(tasks);
        QCOMPARE(table->TextWithoutRows(), u"No task found."_s);
        QCOMPARE(m_fixture->frame.Captions(), QStringList{u"Refresh..."_s});
        std::vector<devservice::Task> made{MakeTask("{0}", "Pending")};
        for (const char* number : {"1", "2", "3", "4"}) {
            const std::string name = std::string("Old") + number;
            devservice::Task& task = made.emplace_back(
                MakeTask(std::string("{") + number + "}", name, "backup", TaskState::Completed));
            task.lastRun = devservice::MakeTime(2025, 3, 1, 21);
        }
        m_fixture->service->PutTasks(made);
        m_fixture->Refresh(tasks);
        QCOMPARE(table->Rows().rowCount(), 4);
        const QString first = table.Cells(0).first();
        QCOMPARE(table.Cells(0).mid(1),
                 QStringList({u"2025-03-01 21:00:00"_s, u"#ICON:208@@Click to delete the task"_s}));

        m_fixture->service->ForgetRequests();
        m_fixture->prompts.ExpectQuestion(
            u"Do you really want to delete the task?\n%1, 2025-03-01 21:00:00"_s.arg(first), true);
        table.Click(0, 2);
        QCoreApplication::sendPostedEvents();
        m_fixture->reader.StepAll();
        QCOMPARE(table->Rows().rowCount(), 3);
        QCOMPARE(m_fixture->service.RequestLines(),
                 QStringList{u"GET /schedule/deletetask?%7B%1%7D"_s.arg(first.back())});

        const QString kept = table.Cells(1).first();
        m_fixture->service->SetAnswer("/schedule/deletetask?%7B" + kept.last(1).toStdString(),
                                      devservice::Answer{500, {}});
        m_fixture->prompts.ExpectQuestion(u"Do you really want to remove the selected tasks?\n3 rows"_s,
                                          true);
        m_fixture->prompts.ExpectMessage(u"Failed to delete the task"_s);
        table.Select({0, 1, 2}, 1);
        table.Click(2, 2);
        QCoreApplication::sendPostedEvents();
        m_fixture->reader.StepAll();
        QCOMPARE(table.Column(0), QStringList{kept});
        QCOMPARE(table.Selected(0), QStringList{kept});
    }

private:
    void Open(RecordPanel& panel) {
        panel.resize(820, 400);
        m_fixture->Open(panel);
    }

    std::unique_ptr<PageFixture<>> m_fixture;
};

BTASK_TEST(TaskViewsTest);

#include "TaskViewsTest.moc"
