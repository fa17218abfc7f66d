// Labels: threads
#include "ctl/Btaskctl.h"

#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "zep/SysInfo.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <future>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeSubTask;
using devservice::MakeTask;
using File = devservice::Database;

namespace {

constexpr char TaskId[] = "{00000000-0000-4000-8000-000000000001}";
const QString TaskIdText = QString::fromLatin1(TaskId);

struct Run {
    CtlExit exit = CtlExit::Done;
    QByteArray out;
    QByteArray error;
};

Run Btaskctl(const QStringList& arguments, std::stop_token stop = {}) {
    Run run;
    QBuffer out(&run.out);
    QBuffer error(&run.error);
    out.open(QIODevice::WriteOnly);
    error.open(QIODevice::WriteOnly);
    run.exit = RunBtaskctl(arguments, out, error, std::move(stop));
    ZEPSysInfoSetServerMode(false);
    return run;
}

QJsonArray Json(const QStringList& arguments) {
    return QJsonDocument::fromJson(Btaskctl(arguments + QStringList{u"--json"_s}).out).array();
}

/// One task with three sub-tasks, a setting and an answer.
void Fill(ServiceFixture& service) {
    service->PutTask(MakeTask(TaskId, "Nightly"));
    service->PutSubTasks(TaskId, {MakeSubTask(1, "PUT", "a", 10, SubTaskState::Done),
                                  MakeSubTask(2, "DIR", "b\nc", 20), MakeSubTask(7, "GET", "d", 30)});
    service->SetSetting("Level", "3");
    service->SetAnswer("/octets", devservice::Answer{207, std::string("a\0\xFF\n", 4)});
}

} // namespace

class BtaskctlTest : public QObject {
    Q_OBJECT

private slots:
    void EndsWithItsCode_data() {
        // The line's words stand between bars; no output: anything.
        const Columns<QString, CtlExit, QByteArray> row("line", "exit", "out");
        using enum CtlExit;
        const QByteArray any;
        const QByteArray none("");
        row(u"task|start|"_s + TaskIdText, Done, none);
        row(u"task|pause|"_s + TaskIdText, Done, none);
        row("task|resume|{none}", Refused, none);
        row(u"task|delete|"_s + TaskIdText, Done, none);
        row(u"task|delete-subtask|%1|2"_s.arg(TaskIdText), Done, none);
        row(u"task|delete-subtask|%1|3"_s.arg(TaskIdText), Refused, none);
        row(u"task|delete-subtask|%1|two"_s.arg(TaskIdText), Usage, none);
        row("settings|get|Level", Done, "3\n");
        row("settings|get|None", Refused, none);
        row("settings|set|Level|4|--type|float", Usage, none);
        row("settings|set|Level|4.5|--type|int", Usage, none);
        row("settings|set|Level|yes|--type|bool", Usage, none);
        row("settings|set|Level|4|--type", Usage, none);
        row("request|PROPFIND|/octets|--expect|207", Done, QByteArray("a\0\xFF\n", 4));
        row("request|GET|/octets", Refused, none);
        row("request|GET|/octets|--expect|any", Usage, none);
        row(u"subtasks|%1|--states|1,2,3"_s.arg(TaskIdText), Usage, none);
        row(u"subtasks|%1|--states|x"_s.arg(TaskIdText), Usage, none);
        row("subtasks|{none}", NoDatabase, none);
        row("subtasks|../scheduler/x", NoDatabase, none);
        row("history|{none}", Done, any);
        row("audit|--max|many", Usage, none);
        row("audit|--from|yesterday", Usage, none);
        row("audit|--contains|it's", Usage, none);
        row("tasks|extra", Usage, none);
        row("tasks|--jsn", Usage, none);
        row("tasks|--", Done, any);
        row("subtasks", Usage, none);
        row("task", Usage, none);
        row("nothing", Usage, none);
        row("--desktop|tasks", Done, any);
        row("tasks|--server", Usage, none);
        row("--server", Usage, none);
        row("--help", Done, any);
    }

    void EndsWithItsCode() {
        const auto [line, exit, out] = Fetched<QString, CtlExit, QByteArray>();
        ServiceFixture service;
        Fill(service);
        const Run run = Btaskctl(line.split(u'|'));
        QCOMPARE(run.exit, exit);
        QVERIFY(out.isNull() ? !run.out.isEmpty() : run.out == out);
        QCOMPARE(run.error.isEmpty(), exit == CtlExit::Done);
    }

    void TasksAsObjects() {
        ServiceFixture service;
        std::vector<devservice::Task> tasks;
        for (int state = 0; state <= 6; ++state) {
            tasks.push_back(MakeTask(std::string("T") + char('0' + state), "Name", "ccbackup",
                                     static_cast<TaskState>(state)));
            tasks.back().created = devservice::SimTime(std::chrono::seconds(1000 - state));
        }
        service->PutTasks(tasks);
        service->Execute(service->DatabaseFile(File::Scheduler),
                         "UPDATE Scheduler SET TaskType=NULL, TaskName=NULL, Description=NULL, NextRun=NULL, "
                         "LastRun=NULL WHERE TaskId='T6'; UPDATE Scheduler SET LastRun='yesterday', "
                         "NextRun='', Schedule=CAST(x'0401' || zeroblob(306) AS BLOB) WHERE TaskId='T0'");
        const QJsonArray rows = Json({u"tasks"_s});
        QCOMPARE(rows.size(), 7);
        const QStringList texts{u"Pending"_s, u"Running"_s, u"Paused"_s, u"Failed"_s, {}, u"Completed"_s, {}};
        for (int state = 0; state <= 6; ++state) {
            const QJsonObject task = rows[state].toObject();
            QCOMPARE(task[u"id"_s], QJsonValue(u"T%1"_s.arg(state)));
            QCOMPARE(task[u"state"_s], QJsonValue(state));
            QCOMPARE(task[u"stateText"_s],
                     texts[state].isNull() ? QJsonValue(QJsonValue::Null) : QJsonValue(texts[state]));
            QCOMPARE(task.keys(),
                     (QStringList{u"description"_s, u"id"_s, u"lastRun"_s, u"name"_s, u"nextRun"_s,
                                  u"scheduleType"_s, u"state"_s, u"stateText"_s, u"type"_s}));
        }
        const QJsonObject first = rows[0].toObject();
        QCOMPARE(first[u"type"_s], QJsonValue(u"ccbackup"_s));
        QCOMPARE(first[u"name"_s], QJsonValue(u"Name"_s));
        QCOMPARE(first[u"lastRun"_s], QJsonValue(u"yesterday"_s));
        QCOMPARE(first[u"nextRun"_s], QJsonValue(u""_s));
        QCOMPARE(first[u"scheduleType"_s], QJsonValue(0x104));
        for (const QString& key : {u"type"_s, u"name"_s, u"description"_s, u"nextRun"_s, u"lastRun"_s})
            QVERIFY2(rows[6][key].isNull(), qPrintable(key));
    }

    void SubTasksAsObjectsAndTable() {
        ServiceFixture service;
        Fill(service);
        const auto numbers = [](const QStringList& more) {
            QList<int> list;
            for (const QJsonValue row : Json(QStringList{u"subtasks"_s, TaskIdText} + more))
                list += row[u"subtask"_s].toInt();
            return list;
        };
        QCOMPARE(numbers({}), (QList<int>{1, 2, 7}));
        QCOMPARE(numbers({u"--states"_s, u"0"_s}), (QList<int>{2, 7}));
        QCOMPARE(numbers({u"--states"_s, u"2,9"_s}), (QList<int>{1}));
        const QJsonObject row = Json({u"subtasks"_s, TaskIdText})[1].toObject();
        const QJsonObject expected{{u"subtask"_s, 2},   {u"text1"_s, u"DIR"_s}, {u"text2"_s, u"b\nc"_s},
                                   {u"text3"_s, u""_s}, {u"text4"_s, u""_s},    {u"number5"_s, 20},
                                   {u"number6"_s, 0}};
        QCOMPARE(row, expected);
        // A line feed in a cell does not break its row.
        QCOMPARE(Btaskctl({u"subtasks"_s, TaskIdText, u"--states"_s, u"0"_s}).out,
                 QByteArray("SUBTASK  TEXT1  TEXT2  TEXT3  TEXT4  NUMBER5  NUMBER6\n"
                            "2        DIR    b c                  20       0\n"
                            "7        GET    d                    30       0\n"));
    }

    void LogsByFilter_data() {
        // The key is that of the value that stands for its row.
        const Columns<QString, QString, QStringList> row("arguments", "key", "values");
        row(u"history "_s + TaskIdText, "stopReason", {u"first"_s, u"second"_s});
        row("history {none}", "stopReason", {});
        row("audit", "trace", {u"third"_s, u"second"_s, u"first"_s});
        row("audit --max 1", "trace", {u"third"_s});
        row("audit --max 0", "trace", {u"third"_s, u"second"_s, u"first"_s});
        row("audit --contains $A$", "trace", {u"second"_s, u"first"_s});
        row("audit --from 2025-03-02", "trace", {u"third"_s, u"second"_s});
        row("audit --to 2025-03-03", "trace", {u"second"_s, u"first"_s});
        row("audit --from 2025-03-02 --to 2025-03-03", "trace", {u"second"_s});
        row("running", "file", {u"moving.txt"_s});
    }

    void LogsByFilter() {
        const auto [arguments, key] = Fetched<QString, QString>();
        ServiceFixture service;
        devservice::Task task = MakeTask(TaskId, "Nightly");
        task.subTasks = {MakeSubTask(1, "PUT", "/moving.txt", 100'000'000)};
        service->PutTask(task);
        Btaskctl({u"task"_s, u"start"_s, TaskIdText});
        service->Advance(std::chrono::milliseconds(200));
        service->Execute(service->DatabaseFile(File::AuditTrace),
                         "DELETE FROM AuditTrace; INSERT INTO AuditTrace VALUES(0,'$$A$ first','2025-03-01 "
                         "10:00:00'),(1,'$$A$ second','2025-03-02 10:00:00'),(2,'$$B$ third','2025-03-03 "
                         "10:00:00')");
        service->Execute(service->DatabaseFile(File::ProcessLog),
                         "DELETE FROM TaskProcessLog; INSERT INTO TaskProcessLog SELECT NULL,'" +
                             std::string(TaskId) +
                             "','a','b',r,1,2,3 FROM (SELECT 'first' AS r UNION ALL SELECT "
                             "'second')");
        QStringList values;
        for (const QJsonValue row : Json(arguments.split(u' ')))
            values += row[key].toString();
        QTEST(values, "values");
    }

    void CommandsReachTheService() {
        ServiceFixture service;
        Fill(service);
        const auto state = [&service] { return service->FindTask(TaskId)->state; };
        Btaskctl({u"task"_s, u"start"_s, TaskIdText});
        QCOMPARE(state(), TaskState::Running);
        Btaskctl({u"task"_s, u"pause"_s, TaskIdText});
        QCOMPARE(state(), TaskState::Paused);
        Btaskctl({u"task"_s, u"resume"_s, TaskIdText});
        QVERIFY(state() != TaskState::Paused);
        const QStringList set{u"settings"_s, u"set"_s};
        const QStringList type{u"--type"_s};
        Btaskctl(set + QStringList{u"Text"_s, u"a b"_s});
        Btaskctl(set + QStringList{u"Int"_s, u"-7"_s} + type + QStringList{u"int"_s});
        Btaskctl(set + QStringList{u"Bool"_s, u"TRUE"_s} + type + QStringList{u"bool"_s});
        Btaskctl(set + QStringList{u"--"_s, u"Dashes"_s, u"--x"_s});
        Btaskctl({u"request"_s, u"POST"_s, u"/x%41"_s, u"--body"_s, u"ä"_s});
        Btaskctl({u"task"_s, u"delete"_s, TaskIdText});
        QVERIFY(!service->FindTask(TaskId));
        QCOMPARE(service.RequestLines().mid(3, 5),
                 (QStringList{u"PUT /settings/Text?ValueType=2&Value=a%20b"_s,
                              u"PUT /settings/Int?ValueType=1&Value=-7"_s,
                              u"PUT /settings/Bool?ValueType=4&Value=True"_s,
                              u"PUT /settings/Dashes?ValueType=2&Value=--x"_s, u"POST /x%41"_s}));
        QCOMPARE(QByteArray::fromStdString(service->Requests()[7].body), QByteArray("\xC3\xA4\0", 3));
    }

    void FaultsHaveTheirCodes_data() {
        const Columns<QString, CtlExit, CtlExit> row("fault", "request", "tasks");
        using enum CtlExit;
        row("down", "refuse", Unreachable, Done);
        row("garbage", "garbage", Unreachable, Done);
        row("refused", "status:403", Refused, Done);
        row("cut off", "fin", Refused, Done);
        row("no database", "db-missing", Done, NoDatabase);
        row("no tables", "db-schema", Done, NoDatabase);
        row("damaged", "db-garbage", Done, NoDatabase);
    }

    void FaultsHaveTheirCodes() {
        QFETCH(const QString, fault);
        ServiceFixture service;
        Fill(service);
        service->SetSetting("Long", "long enough to be cut");
        QVERIFY(service->SetFault(fault.toStdString()));
        const Run request = Btaskctl({u"settings"_s, u"get"_s, u"Long"_s});
        QTEST(request.exit, "request");
        QCOMPARE(request.error.isEmpty(), request.exit == CtlExit::Done);
        const Run tasks = Btaskctl({u"tasks"_s, u"--json"_s});
        QTEST(tasks.exit, "tasks");
        QCOMPARE(tasks.out.isEmpty(), tasks.exit != CtlExit::Done);
    }

    void AStopEndsACommand_data() {
        const Columns<QStringList, CtlExit> row("arguments", "exit");
        row("request", {u"request"_s, u"GET"_s, u"/"_s}, CtlExit::Unreachable);
        row("watch", {u"watch"_s}, CtlExit::Done);
    }

    void AStopEndsACommand() {
        QFETCH(const QStringList, arguments);
        ServiceFixture service;
        service->SetFault(devservice::HttpFault::Hang);
        std::stop_source stop;
        auto run = std::async(std::launch::async, Btaskctl, arguments, stop.get_token());
        QVERIFY(run.wait_for(std::chrono::milliseconds(50)) == std::future_status::timeout);
        stop.request_stop();
        QVERIFY(run.wait_for(std::chrono::seconds(1)) == std::future_status::ready);
        QTEST(run.get().exit, "exit");
    }

    void HelpNamesEveryCommand() {
        const QByteArray help = Btaskctl({u"--help"_s}).out;
        for (const char* words : {"tasks", "subtasks TASK", "task start ID", "task delete-subtask ID N",
                                  "settings set NAME VALUE", "request VERB PATH"})
            QVERIFY2(help.contains(words), words);
        const QByteArray one = Btaskctl({u"request"_s, u"--help"_s}).out;
        QVERIFY(one.contains("--expect") && !one.contains("subtasks"));
    }

    void TheProgramKeepsOctetsAndCodes() {
        ServiceFixture service;
        Fill(service);
        const auto run = [](const QStringList& arguments) {
            QProcess program;
            program.start(QCoreApplication::applicationDirPath() + u"/btaskctl"_s, arguments);
            program.waitForFinished();
            return std::tuple(program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1,
                              program.readAllStandardOutput(), !program.readAllStandardError().isEmpty());
        };
        QCOMPARE(run({u"request"_s, u"GET"_s, u"/octets"_s, u"--expect"_s, u"207"_s}),
                 std::tuple(0, QByteArray("a\0\xFF\n", 4), false));
        QCOMPARE(run({u"subtasks"_s, u"{none}"_s}), std::tuple(4, QByteArray(), true));
        service->SetFault(devservice::HttpFault::Refuse);
        QCOMPARE(run({u"settings"_s, u"get"_s, u"A"_s}), std::tuple(3, QByteArray(), true));
    }
};

BTASK_TEST(BtaskctlTest);
#include "BtaskctlTest.moc"
