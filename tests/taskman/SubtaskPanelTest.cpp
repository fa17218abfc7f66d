#include "TaskFixture.h"
#include "list/RecordPanel.h"
#include "support/TestMain.h"
#include "taskman/SubTaskTable.h"
#include "taskman/TaskList.h"

#include <QLabel>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeSubTask;
using devservice::MakeTask;

namespace {

enum Column { NameColumn = 1, ParameterColumn = 2, DeleteColumn = 5 };

const QString AskOne = u"Do you really want to remove this sub-task?"_s;
const QString AskSeveral = u"Do you really want to remove selected sub-tasks?"_s;
const QString Failed = u"Failed to delete the subtask"_s;

const TaskRow Photos{{u"{1}"_s, u"Photos"_s}, u"backup"_s, u"/home/mara/Photos\t/target"_s, {}, {}};

devservice::SubTask Noted(devservice::SubTask subTask, const char* note) {
    subTask.parameter2 = "/target";
    subTask.note = note;
    return subTask;
}

/// The requests for these sub-tasks, as they come over the wire.
QStringList Deletions(const QList<int>& numbers) {
    QStringList lines;
    for (const int number : numbers)
        lines.append(u"GET /schedule/delsub?%7B1%7D:%1"_s.arg(number));
    return lines;
}

QStringList Files(const QList<int>& numbers) {
    QStringList files;
    for (const int number : numbers)
        files.append(u"file%1"_s.arg(number));
    return files;
}

/// The question, and of what.
QString Asked(const QList<int>& numbers) {
    return numbers.size() == 1 ? AskOne + u"\nUpload, file%1"_s.arg(numbers.front())
                               : AskSeveral + u"\n%1 rows"_s.arg(numbers.size());
}

} // namespace

class SubtaskPanelTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_fixture->service->PutTask(MakeTask("{1}", "Photos"));
        PutFiles({1, 2, 3, 4, 5});
    }

    void cleanup() { m_fixture.reset(); }

    void listsWhatWaits_data() {
        // rows: without the ends that all of them have
        const Columns<SubtaskView, QStringList> row("view", "rows");
        row("pending", SubtaskView::Pending,
            {u"#ICON:209#@@Uploading...|Upload|2024/a.jpg| 2.000 KB|"_s,
             u"#ICON:210#@@Downloading...|Receive Change Notification|/ChangeLog/7| 0.000 KB|"_s});
        row("pending retry", SubtaskView::PendingRetry,
            {u"#ICON:209#@@Uploading...|Upload File Snapshot|b.jpg| 1.000 KB|no connection"_s,
             u"|Odd|Change(c.txt)| 0.000 KB|odd"_s});
    }

    void listsWhatWaits() {
        m_fixture->service->PutSubTasks(
            "{1}", {Noted(MakeSubTask(1, "put", "/home/mara/Photos/2024/a.jpg", 2048), ""),
                    MakeSubTask(2, "GET", "/ChangeLog/7"),
                    Noted(MakeSubTask(3, "BPUT", "/home/mara/Photos/b.jpg", 1024, SubTaskState::PendingRetry),
                          "no connection"),
                    MakeSubTask(4, "PUT", "running", 9, SubTaskState::Running),
                    MakeSubTask(5, "PUT", "done", 9, SubTaskState::Done),
                    Noted(MakeSubTask(14, "Odd", "c.txt.###m", 0, SubTaskState::Failed), "odd")});
        const auto [view, rows] = Fetched<SubtaskView, QStringList>();
        const auto panel = Open(view);
        const TableHand table(*panel);
        QCOMPARE(table->Rows().rowCount(), rows.size());
        for (int row = 0; row < rows.size(); ++row)
            QCOMPARE(table.Cells(row).join(u'|'),
                     rows[row] + u"|#ICON:208@@Click to delete the failed sub-task"_s);
        QCOMPARE(m_fixture->frame.StatusText(), u"View the pending subtasks. They'll be processed later."_s);
        QCOMPARE(m_fixture->frame.Captions(), QStringList{u"Refresh"_s});
    }

    void saysWhyItIsEmpty() {
        PutFiles({});
        RecordPanel panel(m_fixture->console, SubTaskTable(Photos, SubtaskView::Pending));
        panel.Activate();
        const TableHand table(panel);
        QCOMPARE(table->TextWithoutRows(), u"Loading..."_s);
        m_fixture->reader.StepAll();
        QCOMPARE(table->TextWithoutRows(), u"No Subtask found."_s);

        const auto file = m_fixture->service->SubTaskFile("{1}");
        m_fixture->service->SetFault({devservice::DatabaseFault::Garbage, file});
        m_fixture->Refresh(panel);
        QCOMPARE(table->TextWithoutRows(), u"Failed to get subtask list, refresh later"_s);
        QVERIFY(m_fixture->frame.StatusText().startsWith("The file is damaged"_L1));

        m_fixture->service->ClearFaults();
        PutFiles({8});
        m_fixture->Refresh(panel);
        QCOMPARE(table.Column(ParameterColumn), QStringList{u"file8"_s});
        PutFiles({});
        m_fixture->Refresh(panel);
        QCOMPARE(table->TextWithoutRows(), u"No Subtask found."_s);
        QVERIFY(m_fixture->frame.StatusText().startsWith("View the pending"_L1));
    }

    void deletesAfterOneQuestion_data() {
        // Rows are selected and clicked, -1 for the Delete key; numbers are asked about.
        const Columns<QList<int>, QList<int>, int, bool> row("asked", "selected", "clicked", "yes");
        row("one, no", {2}, {}, 1, false);
        row("one, yes", {2}, {}, 1, true);
        row("one selected, by key", {4}, {3}, -1, true);
        row("several, no", {1, 3}, {0, 2}, 0, false);
        row("several, yes", {1, 3, 5}, {4, 0, 2}, 2, true);
        row("several, by key", {3, 5}, {4, 2}, -1, true);
        row("another one than the selected", {2}, {0, 2}, 1, true);
    }

    void deletesAfterOneQuestion() {
        const auto [asked, selected, clicked, yes] = Fetched<QList<int>, QList<int>, int, bool>();
        const QList<int> deleted = yes ? asked : QList<int>();
        const auto panel = Open();
        const TableHand table(*panel);
        table.Select(selected, NameColumn);
        m_fixture->prompts.ExpectQuestion(Asked(asked), yes);
        if (clicked >= 0)
            table.Click(clicked, DeleteColumn);
        else
            QTest::keyClick(panel->findChild<CBrenListCtrl*>(), Qt::Key_Delete);
        QCoreApplication::sendPostedEvents();
        m_fixture->reader.StepAll();
        QVERIFY(m_fixture->prompts.IsPlayed());
        QCOMPARE(m_fixture->service.RequestLines(), Deletions(deleted));
        QList<int> left{1, 2, 3, 4, 5};
        left.removeIf([&deleted](int number) { return deleted.contains(number); });
        QCOMPARE(table.Column(ParameterColumn), Files(left));
    }

    void tellsOnceOfThoseThatFailed_data() {
        // Without a fault of the whole service one row is refused. What failed is still selected.
        const Columns<devservice::HttpFault, QList<int>, QList<int>> row("fault", "requested", "failed");
        using devservice::HttpFault;
        row("one of three", HttpFault::None, {1, 2, 3}, {2});
        row("each of three", HttpFault::WrongStatus, {1, 2, 3}, {1, 2, 3});
        row("the service is gone", HttpFault::Refuse, QList<int>(), {1, 2, 3});
        row("the service goes away: no more is sent", HttpFault::GarbageHeaders, {1}, {2, 3});
    }

    void tellsOnceOfThoseThatFailed() {
        const auto [fault, requested, failed] = Fetched<devservice::HttpFault, QList<int>, QList<int>>();
        const auto panel = Open();
        const TableHand table(*panel);
        table.Select({0, 1, 2}, NameColumn);
        if (fault == devservice::HttpFault::None)
            m_fixture->service->SetAnswer("/schedule/delsub?%7B1%7D:2", devservice::Answer{500, {}});
        else
            m_fixture->service->SetFault(fault);
        if (fault == devservice::HttpFault::WrongStatus)
            m_fixture->service->SetAnswer("/schedule/delsub", devservice::Answer{200, {}});
        m_fixture->prompts.ExpectQuestion(Asked({1, 2, 3}), true);
        m_fixture->prompts.ExpectMessage(Failed);
        table.Click(1, DeleteColumn);
        QCoreApplication::sendPostedEvents();
        m_fixture->reader.StepAll();
        QVERIFY(m_fixture->prompts.IsPlayed());
        QCOMPARE(m_fixture->service.RequestLines(), Deletions(requested));
        QCOMPARE(table.Selected(ParameterColumn), Files(failed));
    }

    void aDoubleClickSendsOneRequest() {
        const auto panel = Open();
        const TableHand table(*panel);
        m_fixture->prompts.ExpectQuestion(Asked({1}), false);
        table.DoubleClick(0, DeleteColumn);
        QCoreApplication::sendPostedEvents();
        m_fixture->prompts.ExpectQuestion(Asked({2}), true);
        table.DoubleClick(1, DeleteColumn);
        QCoreApplication::sendPostedEvents();
        table.Click(1, DeleteColumn); // a slow one: the first is under way
        QCoreApplication::sendPostedEvents();
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service.RequestLines(), Deletions({2}));
    }

    void deletesTheRowThatWasClicked_data() {
        // The files before the click is heard and during the question, of the next run with the same numbers.
        const Columns<QList<int>, QList<int>, bool, QList<int>> row("before", "during", "nextRun", "deleted");
        const QList<int> all{1, 2, 3, 4, 5};
        row("moved before the click is heard", {2, 3, 4}, all, false, {2});
        row("gone before the click is heard", {1, 3, 4}, {3}, false, {});
        row("moved during the question", all, {0, 1, 2, 3}, false, {2});
        row("gone during the question", all, {0, 1, 3}, false, {});
        row("its number is another file's", all, all, true, {});
    }

    void deletesTheRowThatWasClicked() {
        const auto [before, during, nextRun, deleted] = Fetched<QList<int>, QList<int>, bool, QList<int>>();
        const auto panel = Open();
        const TableHand table(*panel);
        if (before.contains(2)) // there is nothing to ask about a row that has gone
            m_fixture->prompts.ExpectQuestion(Asked({2}), true);
        m_fixture->prompts.Hold();
        table.Click(1, DeleteColumn);
        PutFiles(before);
        m_fixture->Refresh(*panel);
        QCoreApplication::sendPostedEvents();
        PutFiles(during, nextRun ? "next" : "file");
        m_fixture->Refresh(*panel);
        if (before.contains(2) && deleted.isEmpty())
            m_fixture->prompts.ExpectMessage(u"Failed to delete the subtask"_s);
        m_fixture->prompts.Release();
        m_fixture->reader.StepAll();
        QCOMPARE(m_fixture->service.RequestLines(), Deletions(deleted));
    }

    void letsOthersInBetweenAndStops() {
        const auto panel = Open();
        const TableHand table(*panel);
        table.Select({0, 1, 2, 3, 4}, NameColumn);
        m_fixture->prompts.ExpectQuestion(Asked({1, 2, 3, 4, 5}), true);
        QTest::keyClick(panel->findChild<CBrenListCtrl*>(), Qt::Key_Delete);
        QCoreApplication::sendPostedEvents();
        auto* stop = panel->findChild<QPushButton*>();
        const auto says = [&stop](const QString& words) {
            return stop->isVisible() && stop->parentWidget()->findChild<QLabel*>()->text() == words;
        };
        QVERIFY(says(u"Deleting 1 of 5..."_s));
        QVERIFY(m_fixture->reader.Step(Lane::Service));
        QVERIFY(says(u"Deleting 2 of 5..."_s));

        // Another page's read has its turn after the row that is being deleted, a command before it.
        QStringList order;
        for (const ReadPriority priority : {ReadPriority::Front, ReadPriority::Command})
            m_fixture->reader.Submit({Lane::Service, [priority] { return priority; }, std::stop_source(),
                                      [&, priority](std::stop_token) {
                                          order.append(priority == ReadPriority::Front ? u"read"_s
                                                                                       : u"command"_s);
                                          order.append(m_fixture->service.RequestLines().last().right(2));
                                      },
                                      [] {}});
        for (int step = 0; step < 3; ++step)
            QVERIFY(m_fixture->reader.Step(Lane::Service));
        QCOMPARE(order, QStringList({u"command"_s, u":1"_s, u"read"_s, u":2"_s}));

        QTest::mouseClick(stop, Qt::LeftButton);
        m_fixture->reader.StepAll(); // the third row was on its way
        QCOMPARE(m_fixture->service.RequestLines(), Deletions({1, 2, 3}));
        QCOMPARE(table.Selected(ParameterColumn), Files({4, 5}));
        QVERIFY(!stop->isVisible());
    }

private:
    std::unique_ptr<RecordPanel> Open(SubtaskView view = SubtaskView::Pending) {
        auto panel = std::make_unique<RecordPanel>(m_fixture->console, SubTaskTable(Photos, view));
        panel->resize(820, 400);
        m_fixture->Open(*panel);
        m_fixture->service->ForgetRequests();
        return panel;
    }

    void PutFiles(const QList<int>& numbers, const std::string& name = "file") {
        std::vector<devservice::SubTask> files;
        for (const int number : numbers)
            files.push_back(MakeSubTask(number, "PUT", name + std::to_string(number)));
        m_fixture->service->PutSubTasks("{1}", std::move(files));
    }

    std::unique_ptr<PageFixture<>> m_fixture;
};

BTASK_TEST(SubtaskPanelTest);

#include "SubtaskPanelTest.moc"
