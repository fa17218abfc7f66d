#include "Reading.h"
#include "stores/SubTaskStore.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;
using File = devservice::Database;

namespace {

/// A row of the table of tasks; its texts are SQL literals.
void PutTaskRow(ServiceFixture& service, const char* name, const char* schedule, int startTime,
                const char* text = "NULL") {
    const QString sql = u"INSERT INTO Scheduler VALUES(%1,'owner',%2,%1,%2,%2,%3,7,%2,%4,41)"_s.arg(
        QString::fromUtf8(name), QString::fromUtf8(text), QString::fromUtf8(schedule),
        QString::number(startTime));
    service->Execute(service->DatabaseFile(File::Scheduler), sql.toStdString());
}

/// A schedule as an SQL literal.
QByteArray Blob(quint32 type, bool weekdaysInUse, const QByteArray& weekdays, qsizetype size = 308) {
    QByteArray blob(308, '\0');
    blob[0] = char(type);
    blob[1] = char(type >> 8);
    blob.replace(36, 7, weekdays);
    blob[43] = char(weekdaysInUse ? 0x80 : 0);
    return "x'" + blob.leftJustified(size, '\0', true).toHex() + '\'';
}

QString Joined(const TaskRecord& task) {
    const auto shown = [](const QString& text) { return text.isNull() ? u"null"_s : u'"' + text + u'"'; };
    return QStringList{shown(task.taskId),  shown(task.kind),
                       shown(task.name),    shown(task.description),
                       shown(task.nextRun), QString::number(int(task.state)),
                       shown(task.lastRun), QString::number(task.schedule.type)}
        .join(u' ');
}

} // namespace

class SchedulerStoreTest : public QObject {
    Q_OBJECT

private slots:
    void walksTasksWithAScheduleLatestFirst() {
        ServiceFixture service;
        const std::tuple<const char*, const char*, int> rows[] = {
            {"'oldest'", "zeroblob(308)", -5},
            {"'null'", "NULL", 1},
            {"'empty'", "x''", 2},
            {"'short'", "zeroblob(307)", 3},
            {"'latest'", "zeroblob(308)", 9},
            {"'long'", "zeroblob(309)", 4},
            {"'middle'", "zeroblob(308)", 5},
        };
        for (const auto& [name, schedule, startTime] : rows)
            PutTaskRow(service, name, schedule, startTime);
        QCOMPARE(TaskNames::Read().names, (QStringList{u"latest"_s, u"middle"_s, u"oldest"_s}));
    }

    void rowsComeAsTheyAreStored_data() {
        const Columns<QByteArray, QString> row("text", "read");
        row("null", "NULL", "null");
        row("empty", "''", "\"\"");
        row("wide", "'\xE2\x82\xAC \xF0\x9F\x93\x81'", "\"€ 📁\"");
        row("not UTF-8", "CAST(x'61FF62C3' AS TEXT)", "\"a\uFFFDb\uFFFD\"");
        row("zero octet", "CAST(x'610062' AS TEXT)", u"\"a%1b\""_s.arg(QChar(0)));
        row("number", "12", "\"12\"");
        row("blob", "x'6162'", "\"ab\"");
    }

    void rowsComeAsTheyAreStored() {
        const auto [text, read] = Fetched<QByteArray, QString>();
        ServiceFixture service;
        PutTaskRow(service, "'T'", Blob(258, true, "\1\1\1\1\1\1\1"), 1, text);
        QString row;
        QVERIFY(EnumAllTasks([&row](const TaskRecord& task) {
            row = Joined(task);
            return true;
        }));
        QCOMPARE(row, u"\"T\" %1 \"T\" %1 %1 7 %1 258"_s.arg(read));
        const TaskLookup lookup = GetTaskInfo(u"T"_s);
        QVERIFY(lookup.read && lookup.found);
        QCOMPARE(lookup.task.lastRun, text == "NULL" ? u"N/A"_s : read.mid(1, read.size() - 2));
        QCOMPARE(lookup.task.nextRun.isNull(), text == "NULL");
        QCOMPARE(int(lookup.task.state), 7);
        QCOMPARE(lookup.task.number, 41);
    }

    void aLookupTellsTheWeekdays_data() {
        const Columns<QByteArray, QString, bool> row("schedule", "letters", "scheduled");
        const QByteArray all(7, '\1');
        const QByteArray some("\1\0\xFF\0\0\0\1", 7);
        row("all", Blob(1, true, all), "SMTWTFS", true);
        row("some", Blob(1, true, some), "S_T___S", true);
        row("none", Blob(1, true, QByteArray(7, '\0')), "_______", true);
        row("not in use", Blob(1, false, all), {}, false);
        row("not in use, type 4", Blob(4, false, all), {}, true);
        row("in use, type 4", Blob(4, true, some), "S_T___S", true);
        row("type 4 in the low octet only", Blob(0x104, false, all), {}, false);
        row("null", "NULL", {}, false);
        row("short", Blob(4, true, all, 307), {}, false);
        row("long", Blob(4, true, all, 309), {}, false);
    }

    void aLookupTellsTheWeekdays() {
        QFETCH(const QByteArray, schedule);
        ServiceFixture service;
        PutTaskRow(service, "'T'", schedule, 1);
        const TaskLookup lookup = GetTaskInfo(u"T"_s);
        QVERIFY(lookup.found);
        QTEST(lookup.task.weekdays.letters, "letters");
        QTEST(lookup.task.weekdays.scheduled, "scheduled");
    }

    void aLookupTellsAbsenceFromFailure() {
        ServiceFixture service;
        PutTaskRow(service, "'T'", "zeroblob(308)", 1);
        {
            SchedulerStore store;
            for (const auto& id : {u"t"_s, u""_s, u"T' OR '1'='1"_s, u"%"_s}) {
                const TaskLookup lookup = store.LookupTask(id);
                QVERIFY(lookup.read && !lookup.found);
                QCOMPARE(lookup.task.number, 0);
            }
            QVERIFY(store.LookupTask(u"T"_s)); // a store looks up again and again
        }
        QCOMPARE(Traces(service.Home()).filter(u"[Scheduler]execute statement failed:"_s).size(), 4);
        service->SetFault(devservice::DatabaseFault::Missing);
        const TaskLookup lookup = GetTaskInfo(u"T"_s);
        QVERIFY(!lookup.read && !lookup.found);
        QVERIFY(!ProbeSchedulerDatabase());
        service->ClearFaults();
        QVERIFY(ProbeSchedulerDatabase());
    }

    void subTasksComeByStateInTheirOrder_data() {
        const Columns<QList<int>, QList<int>> row("states", "numbers");
        row("all", {}, {1, 3, 5, 7, 9});
        row("one state", {0, 0}, {5, 9});
        row("two states", {3, 4}, {1, 3});
        row("two states, other order", {4, 3}, {1, 3});
        row("no such", {17, -1}, {});
    }

    void subTasksComeByStateInTheirOrder() {
        QFETCH(const QList<int>, states);
        ServiceFixture service;
        service->PutTask(devservice::MakeTask(TaskId, "Task"));
        using enum SubTaskState;
        const std::pair<int, SubTaskState> rows[] = {
            {9, Pending}, {3, PendingRetry}, {5, Pending}, {1, Failed}, {7, Done}};
        std::vector<devservice::SubTask> subTasks;
        for (const auto& [number, state] : rows)
            subTasks.push_back(devservice::MakeSubTask(number, "PUT", "a", 0, state));
        service->PutSubTasks(TaskId, subTasks);
        QList<int> numbers;
        const SubTaskCallback add = [&numbers](const SubTaskRecord& subTask) {
            numbers += subTask.subTaskNumber;
            return true;
        };
        QVERIFY(states.isEmpty() ? EnumSubTasks(TaskIdText, add)
                                 : EnumSubTasks(TaskIdText, states[0], states[1], add));
        QTEST(numbers, "numbers");
        numbers.clear();
        SubTaskStore store(TaskIdText);
        QVERIFY(store.EnumAll([&](const SubTaskRecord& subTask) { return add(subTask) && false; }));
        QCOMPARE(numbers, QList<int>{1});
    }

    void aSubTaskIsReadByPosition() {
        ServiceFixture service;
        service->PutTask(devservice::MakeTask(TaskId, "Task"));
        service->PutSubTasks(TaskId, {});
        service->Execute(service->SubTaskFile(TaskId),
                         "INSERT INTO SubTaskDBWorker VALUES('zero','one',NULL,'',CAST(x'FF' AS TEXT),"
                         "5000000000,6,'seven',-8,1)");
        SubTaskRecord read;
        QVERIFY(EnumSubTasks(TaskIdText, 1, 1, [&read](const SubTaskRecord& subTask) {
            read = subTask;
            return true;
        }));
        QCOMPARE(read.text1 + read.text3 + read.text4, u"one\uFFFD"_s);
        QVERIFY(read.text2.isNull() && !read.text3.isNull());
        QCOMPARE(read.number5, 5'000'000'000);
        QCOMPARE(read.number6, 6);
        QCOMPARE(read.subTaskNumber, -8);
    }

    void anIdentifierThatIsNoFileNameIsRefused() {
        ServiceFixture service;
        service->PutTask(devservice::MakeTask("task", "Task"));
        service->PutSubTasks("task", {devservice::MakeSubTask(1, "PUT", "a")});
        int rows = 0;
        const SubTaskCallback count = [&rows](const SubTaskRecord&) { return ++rows > 0; };
        for (const auto& id : {u"../scheduler/task"_s, u"./task"_s, u"x\\..\\task"_s, u"C:task"_s, u"."_s,
                               u".."_s, u""_s, u"task.db%1"_s.arg(QChar(0))})
            QCOMPARE(EnumSubTasks(id, count).outcome, ReadOutcome::Failed);
        QCOMPARE(rows, 0);
        QVERIFY(EnumSubTasks(u"task"_s, count));
        QCOMPARE(rows, 1);
    }
};

BTASK_TEST(SchedulerStoreTest);
#include "SchedulerStoreTest.moc"
