// Labels: threads
#include "Shell.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QCoreApplication>
#include <QJsonObject>
#include <QProcess>

#include <future>
#include <semaphore>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeSubTask;
using devservice::MakeTask;
using File = devservice::Database;

namespace {

constexpr char TaskId[] = "{00000000-0000-4000-8000-000000000001}";
const QString TaskIdText = QString::fromLatin1(TaskId);

constexpr char OddName[] = "quote \" back \\ tab\t bell\x07 \xC3\xA4\xF0\x9F\x8C\xB1";

/// Holds its first write up until it may go on.
struct HeldOutput : QIODevice {
    HeldOutput() { open(WriteOnly | Unbuffered); }
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override {
        if (octets.isEmpty()) {
            began.release();
            goOn.acquire();
        }
        octets.append(data, size);
        return isFull ? -1 : size;
    }

    std::binary_semaphore began{0};
    std::binary_semaphore goOn{0};
    std::stop_source stop;
    bool isFull = false;
    QByteArray octets;
};

CtlExit RunOn(QIODevice& out, const QStringList& arguments, std::stop_token stop = {}) {
    QBuffer in;
    QBuffer error;
    error.open(QIODevice::WriteOnly);
    return RunBtaskctl(arguments, in, out, error, std::move(stop));
}

/// A task with three sub-tasks, two of one name, settings and an answer.
void Fill(ServiceFixture& service) {
    service->PutTask(MakeTask(TaskId, "Nightly"));
    service->PutSubTasks(TaskId, {MakeSubTask(1, "PUT", "a", 10, SubTaskState::Done),
                                  MakeSubTask(2, "DIR", "b\nc", 20), MakeSubTask(7, "GET", "d", 30)});
    service->PutTasks({MakeTask("{2}", "Twins"), MakeTask("{3}", "twins")});
    service->SetSetting("Level", "3");
    service->SetSetting("ProxyPwd", "open");
    service->SetAnswer("/octets", devservice::Answer{207, std::string("a\0\xFF\n", 4)});
}

} // namespace

class BtaskctlTest : public QObject {
    Q_OBJECT

private slots:
    void endsWithItsCode_data() {
        // The line's words stand between bars; no output: anything.
        const Columns<QString, CtlExit, QByteArray> row("line", "exit", "out");
        using enum CtlExit;
        const QByteArray any;
        const QByteArray none("");
        row(u"task|start|"_s + TaskIdText, Done, none);
        row(u"task|pause|"_s + TaskIdText, Done, none);
        row("task|resume|{none}", Refused, none);
        row("task|resume|NIGHTLY", Done, none);
        row("task|resume|Night", Refused, none);
        row("task|resume|Twins", Refused, none);
        row("task|resume|{a&b}", Usage, none);
        row(u"task|delete|"_s + TaskIdText, Done, none);
        row("task|delete|Nightly", Usage, none);
        row("task|delete-subtask|Nightly|2", Usage, none);
        row(u"task|delete-subtask|%1|2"_s.arg(TaskIdText), Done, none);
        row(u"task|delete-subtask|%1|3"_s.arg(TaskIdText), Refused, none);
        row(u"task|delete-subtask|%1|two"_s.arg(TaskIdText), Usage, none);
        row("settings|get|Level", Done, "3\n");
        row("settings|get|None", Refused, none);
        row("settings|get|ProxyPwd", Done, "******\n");
        row("settings|get|Le?vel", Usage, none);
        row("settings|set|ProxyPwd|open", Usage, none);
        row("settings|set|DropFolders|a&b", Usage, none);
        row("settings|set|Level", Usage, none);
        row("settings|set|Level|4|--from|-", Usage, none);
        row("settings|set|Level|--from|/no/such/file", Usage, none);
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
        row("subtasks|{none}|--json", NoDatabase, "[]\n");
        row("subtasks|{none}/../x", NoDatabase, none);
        row("subtasks|Night|--json", Refused, "[]\n");
        row("history|{none}", Done, any);
        row("audit|--max|many", Usage, none);
        row("audit|--from|yesterday", Usage, none);
        row("audit|--contains|it's", Usage, none);
        row("audit|--level|2", Usage, none);
        row("tasks|extra", Usage, none);
        row("tasks|--jsn", Usage, none);
        row("tasks|--json|--json", Usage, none);
        row("tasks|--state|asleep", Usage, none);
        row("tasks|--", Done, any);
        row("subtasks", Usage, none);
        row("task", Usage, none);
        row("nothing", Usage, none);
        row("--desktop|tasks", Done, any);
        row("tasks|--server", Usage, none);
        row("--server|--desktop|tasks", Usage, none);
        row("--server", Usage, none);
        row("--version", Done, any);
        row("help|nothing", Usage, none);
    }

    void endsWithItsCode() {
        const auto [line, exit, out] = Fetched<QString, CtlExit, QByteArray>();
        ServiceFixture service;
        Fill(service);
        const Run run = Btaskctl(line.split(u'|'));
        QCOMPARE(run.exit, exit);
        QVERIFY(out.isNull() ? !run.out.isEmpty() : run.out == out);
        QCOMPARE(run.error.isEmpty(), exit == CtlExit::Done);
    }

    void tasksAsObjects() {
        ServiceFixture service;
        std::vector<devservice::Task> tasks;
        for (int state = 0; state <= 6; ++state) {
            tasks.push_back(MakeTask(std::string("T") + char('0' + state), OddName, "ccbackup",
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
        QCOMPARE(first[u"name"_s], QJsonValue(QString::fromUtf8(OddName)));
        QCOMPARE(first[u"lastRun"_s], QJsonValue(u"yesterday"_s));
        QCOMPARE(first[u"nextRun"_s], QJsonValue(u""_s));
        QCOMPARE(first[u"scheduleType"_s], QJsonValue(0x104));
        for (const QString& key : {u"type"_s, u"name"_s, u"description"_s, u"nextRun"_s, u"lastRun"_s})
            QVERIFY2(rows[6][key].isNull(), qPrintable(key));
        QStringList chosen;
        for (const QJsonValue row : Json({u"tasks"_s, u"--state"_s, u"paused"_s, u"--state"_s, u"Failed"_s}))
            chosen += row[u"id"_s].toString();
        QCOMPARE(chosen, (QStringList{u"T2"_s, u"T3"_s}));
    }

    void subTasksAsObjectsAndTable() {
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
        const QJsonObject expected{
            {u"subtask"_s, 2},        {u"type"_s, u"DIR"_s}, {u"parameter1"_s, u"b\nc"_s},
            {u"parameter2"_s, u""_s}, {u"note"_s, u""_s},    {u"size"_s, 20},
            {u"retries"_s, 0}};
        QCOMPARE(row, expected);
        // A line feed in a cell does not break its row, and a long text pads no other row to its length.
        service->PutSubTasks(
            TaskId, {MakeSubTask(2, "DIR", "b\nc", 20), MakeSubTask(7, "GET", std::string(50, 'd'), 30)});
        const QByteArray gap(40 - 10, ' ');
        QCOMPARE(Btaskctl({u"subtasks"_s, u"nightly"_s, u"--states"_s, u"0"_s}).out,
                 "SUBTASK  TYPE  PARAMETER1" + gap +
                     "  PARAMETER2  NOTE  SIZE  RETRIES\n"
                     "2        DIR   b c" +
                     gap +
                     "                           20    0\n"
                     "7        GET   " +
                     QByteArray(50, 'd') + "                    30    0\n");
    }

    void logsByFilter_data() {
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
        row("audit --level error --level info", "trace", {u"third"_s, u"first"_s});
        row("audit --max 1 --level info", "trace", {}); // the level is looked at last
        row("running", "file", {u"moving.txt"_s});
    }

    void logsByFilter() {
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

    void commandsReachTheService() {
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

    void faultsHaveTheirCodes_data() {
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

    void faultsHaveTheirCodes() {
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
        QCOMPARE(tasks.out == "[]\n", tasks.exit != CtlExit::Done);
    }

    void aStopEndsACommand_data() {
        const Columns<QStringList, CtlExit> row("arguments", "exit");
        row("request", {u"request"_s, u"GET"_s, u"/"_s}, CtlExit::Unreachable);
        row("watch", {u"watch"_s}, CtlExit::Done);
    }

    void aStopEndsACommand() {
        QFETCH(const QStringList, arguments);
        ServiceFixture service;
        service->SetFault(devservice::HttpFault::Hang);
        std::stop_source stop;
        auto run = std::async(std::launch::async, [&] { return Btaskctl(arguments, stop.get_token()); });
        QVERIFY(run.wait_for(std::chrono::milliseconds(50)) == std::future_status::timeout);
        stop.request_stop();
        QVERIFY(run.wait_for(std::chrono::seconds(1)) == std::future_status::ready);
        QTEST(run.get().exit, "exit");
    }

    void aStartWaitsForTheOutcome_data() {
        // What happens while it waits, and what it ends with.
        const Columns<QString, QString, CtlExit, QByteArray, QByteArray> row("meanwhile", "file", "exit",
                                                                             "out", "error");
        using enum CtlExit;
        row("time passes", "a.txt", Done, "Completed successfully\n", "");
        row("time passes in vain", "a.qdb", Refused, "", "1 sub-task failed\n");
        row("pause", "a.txt", Refused, "", "Paused by the user\n");
        row("delete", "a.txt", Refused, "", "The task was deleted before its run ended.\n");
        row("stop", "a.txt", Unreachable, "", "The service stopped before the run ended.\n");
    }

    void aStartWaitsForTheOutcome() {
        QFETCH(const QString, meanwhile);
        QFETCH(const QString, file);
        if (meanwhile == "stop"_L1 && QSysInfo::productType() == "windows"_L1)
            QSKIP("Windows asks its service manager, which does not know the service of a test.");
        ServiceFixture service;
        devservice::Task task = MakeTask(TaskId, "Nightly");
        task.subTasks = {MakeSubTask(1, "PUT", file.toStdString(), 9'000'000)};
        service->PutTask(task);
        // The run before this one ended otherwise.
        service->Execute(service->DatabaseFile(File::ProcessLog), "INSERT INTO TaskProcessLog VALUES(NULL,'" +
                                                                      std::string(TaskId) +
                                                                      "','a','b','old',1,1,1)");
        auto run = std::async(std::launch::async, [] {
            return Btaskctl({u"task"_s, u"start"_s, u"nightly"_s, u"--wait"_s});
        });
        QTRY_COMPARE(service->FindTask(TaskId)->state, TaskState::Running);
        QVERIFY(run.wait_for(std::chrono::milliseconds(0)) == std::future_status::timeout);
        if (meanwhile == "pause"_L1)
            Btaskctl({u"task"_s, u"pause"_s, TaskIdText});
        else if (meanwhile == "delete"_L1)
            service->RemoveTask(TaskId);
        else if (meanwhile == "stop"_L1)
            service->Stop();
        else
            service->Advance(std::chrono::minutes(10));
        const Run ended = run.get();
        QTEST(ended.exit, "exit");
        QTEST(ended.out, "out");
        QTEST(ended.error, "error");
    }

    void settingsComeFromFiles_data() {
        const Columns<QString, QByteArray, CtlExit, QByteArray> row("name", "input", "exit", "kept");
        row("line end", "ProxyPwd", "a b#c+d\n", CtlExit::Done, "a b#c+d");
        row("line end of the other system", "Text", "\ntwo\n\r\n", CtlExit::Done, "\ntwo\n");
        row("empty", "Text", "", CtlExit::Done, "");
        row("a secret that would be damaged", "ProxyPwd", "pass%41&word", CtlExit::Usage, "before");
        row("a secret that is kept otherwise", "ProxyPwd", "other", CtlExit::Refused, "before");
        row("a list that would be damaged", "DropFolders", "Team\tC:\\R&D", CtlExit::Usage, "before");
        row("no UTF-8", "Text", "\xFF", CtlExit::Usage, "before");
    }

    void settingsComeFromFiles() {
        const auto [name, input, exit] = Fetched<QString, QByteArray, CtlExit>();
        ServiceFixture service;
        service->SetSetting(name.toStdString(), "before");
        if (exit == CtlExit::Refused)
            service->SetAnswer("/settings/ProxyPwd?", devservice::Answer{200, {}}); // taken, and not stored
        const Run run = Btaskctl({u"settings"_s, u"set"_s, name, u"--from"_s, u"-"_s}, {}, input);
        QCOMPARE(run.exit, exit);
        QCOMPARE(run.error.contains("not stored as typed"), exit == CtlExit::Refused);
        QTEST(QByteArray::fromStdString(*service->Setting(name.toStdString())), "kept");
        QVERIFY2(!run.error.contains("41&word"), run.error.constData());
    }

    void settingsOfTheCatalog() {
        ServiceFixture service;
        service->SetSetting("UploadWorkerCount", "7");
        const QStringList list{u"settings"_s, u"list"_s};
        QJsonArray rows = Json(list);
        const QJsonObject expected{{u"name"_s, u"UploadWorkerCount"_s},
                                   {u"group"_s, u"Transfer"_s},
                                   {u"type"_s, u"int"_s},
                                   {u"default"_s, u"5"_s},
                                   {u"value"_s, u"7"_s}};
        QVERIFY(rows.contains(expected));
        const auto set = std::count_if(rows.begin(), rows.end(),
                                       [](const QJsonValue& row) { return !row[u"value"_s].isNull(); });
        QCOMPARE(set, 1);
        const Run unset = Btaskctl({u"settings"_s, u"get"_s, u"DownloadWorkerCount"_s});
        QCOMPARE(unset.exit, CtlExit::Refused);
        QVERIFY(unset.out.isEmpty() && unset.error.contains("\"5\""));
        // A service that fails is not one without the setting.
        service->SetFault("status:500@/settings/UploadBandwidth");
        const Run cut = Btaskctl(list + QStringList{u"--json"_s});
        QCOMPARE(cut.exit, CtlExit::Refused);
        const auto read = QJsonDocument::fromJson(cut.out).array().size();
        QVERIFY(read > 0 && read < rows.size());
    }

    void rowsAreWrittenAsTheyAreRead() {
        ServiceFixture service;
        constexpr int Rows = 120'000; // more than waits in memory
        const auto addRows = [&service](int count) {
            service->Execute(
                service->DatabaseFile(File::AuditTrace),
                "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < " +
                    std::to_string(count) +
                    ") INSERT INTO AuditTrace SELECT 0, 'row ' || i, '2025-03-01 10:00:00' FROM n");
        };
        addRows(Rows);
        const QStringList arguments{u"audit"_s, u"--max"_s, u"0"_s, u"--json"_s};
        // Whoever takes his time holds nothing up: the service can write meanwhile.
        HeldOutput slow;
        auto run = std::async(std::launch::async, [&] { return RunOn(slow, arguments); });
        slow.began.acquire();
        addRows(1);
        slow.goOn.release();
        QCOMPARE(run.get(), CtlExit::Done);
        QCOMPARE(QJsonDocument::fromJson(slow.octets).array().size(), Rows);
        // What is stopped in the middle is told, and closed all the same.
        HeldOutput stopped;
        auto second = std::async(std::launch::async,
                                 [&] { return RunOn(stopped, arguments, stopped.stop.get_token()); });
        stopped.began.acquire();
        stopped.stop.request_stop();
        stopped.goOn.release();
        const CtlExit exit = second.get();
        const auto read = QJsonDocument::fromJson(stopped.octets).array().size();
        QVERIFY(read > 0);
        QCOMPARE(exit, read > Rows ? CtlExit::Done : CtlExit::NoDatabase);
        HeldOutput full;
        full.isFull = true;
        full.goOn.release();
        QCOMPARE(RunOn(full, arguments), CtlExit::Refused);
    }

    void theProgramKeepsOctetsAndCodes() {
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
        qputenv("BREN_SERVICE_PORT", "98980");
        QCOMPARE(run({u"settings"_s, u"get"_s, u"A"_s}), std::tuple(2, QByteArray(), true));
    }
};

BTASK_TEST(BtaskctlTest);
#include "BtaskctlTest.moc"
