#include "Shell.h"
#include "stores/FileIndexStore.h"
#include "support/AgentService.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;

/// Backups from the command line.
class BackupCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void listsBackups_data() {
        const Columns<QString, QStringList> row("line", "rows");
        const QString mirrored =
            u"{\"id\":\"{1}\",\"name\":\"Photos\",\"type\":\"Mirrored\",\"state\":2,\"stateText\":\"Paused\","
            "\"nextRun\":\"2025-03-04 21:00:00\",\"lastRun\":null,\"sources\":[\"/home/a "
            "\\\"b\\\"\",\"/home/c\"],"
            "\"targets\":[\"/Home/x\"],\"exclusions\":[\"*\"]}"_s;
        const QString crossCloud =
            u"{\"id\":\"{2}\",\"name\":\"Clouds\",\"type\":\"Cross Cloud\",\"state\":4,\"stateText\":null,"
            "\"nextRun\":\"2025-03-04 21:00:00\",\"lastRun\":null,\"sources\":[],\"targets\":[],\"exclusions\":[]}"_s;
        const QString fileType =
            u"{\"id\":\"{3}\",\"name\":\"Music\",\"type\":\"File "
            u"Type\",\"state\":0,\"stateText\":\"Pending\","
            "\"nextRun\":null,\"lastRun\":\"2025-03-04 09:05:00\",\"sources\":[\"@\"],\"targets\":[\"/Home\"],\"exclusions\":[]}"_s;
        row("backups", {mirrored, crossCloud, fileType});
        row("backups|--state|paused|--state|PENDING", {mirrored, fileType});
        row("backups|--state|completed", {});
    }

    void listsBackups() {
        const auto [line, rows] = Fetched<QString, QStringList>();
        using devservice::MakeTask;
        ServiceFixture service;
        devservice::Task mirrored = MakeTask("{1}", "Photos", "backup", TaskState::Paused);
        mirrored.description = "/home/a \"b\"\n\n/home/c\t/Home/x\t*";
        devservice::Task crossCloud = MakeTask("{2}", "Clouds", "CCBackup", TaskState::Held);
        crossCloud.description = "a\tb\tc";
        devservice::Task fileType = MakeTask("{3}", "Music", "Snapshotbackup");
        fileType.description = "@\t/Home";
        fileType.nextRun.reset();
        fileType.lastRun = devservice::MakeTime(2025, 3, 4, 9, 5);
        devservice::Task done = MakeTask("{4}", "Old", "backup", TaskState::Completed);
        devservice::Task sync = MakeTask("{5}", "Sync", "dropsync");
        sync.schedule.kind = devservice::ScheduleKind::Sync;
        int age = 0;
        for (devservice::Task* task : {&mirrored, &crossCloud, &fileType, &done, &sync}) {
            task->created -= std::chrono::hours(++age);
            service->PutTask(*task);
        }
        const Run run = Btaskctl(line.split(u'|') + QStringList(u"--json"_s));
        QCOMPARE(QString::fromUtf8(run.out),
                 rows.isEmpty() ? u"[]\n"_s : u'[' + rows.join(u",\n"_s) + u"]\n"_s);
        QCOMPARE(run.exit, CtlExit::Done);
    }

    void saysSchedules_data() {
        // The words behind "schedule --form" stand between bars.
        const Columns<QString, QByteArray> row("line", "out");
        const QString start = u"|--date|2025-1-1|--time|0:0:0"_s;
        const QString padded = u"|--date|2024-02-29|--time|09:05:59"_s;
        row(u"dialog|--mode|now"_s + start, "0 2025 1 1 0 0 0 1 1 1 1 1 1 1\n"
                                            "<a>Backup Task Will Start Immediately (Click To Change)</a>\n"
                                            "Backup Task Will Start Immediately \n");
        row(u"dialog|--mode|daily"_s + start,
            "1 2025 1 1 0 0 0 1 1 1 1 1 1 1\n"
            "<a>Backup Task Will Start at 2025-1-1 0:0:0 (Click To Change)</a>\n"
            "Backup task will start at 0:0:0 every day after  2025-1-1\n");
        row(u"dialog|--mode|weekly|--days|mon,FRI"_s + padded,
            "2 2024 2 29 9 5 59 0 1 0 0 0 1 0\n"
            "<a>Backup Task Will Start Daily at 2024-2-29 9:5:59 (Click To Change)</a>\n"
            "Backup Task Will Start on Selected Weekdays at 9:5:59 after 2024-2-29 \n");
        row(u"server|--mode|daily|--days|"_s + start,
            "1 2025 1 1 0 0 0 0 0 0 0 0 0 0\n"
            "<a>Backup Task Will Start Daily at 2025-1-1 0:0:0(Click To Change)</a>\n"
            "Backup task will start at 0:0:0 every day after  2025-1-1\n");
        row(u"server|--mode|weekly"_s + start,
            "2 2025 1 1 0 0 0 1 1 1 1 1 1 1\n"
            "<a>Backup Task Will Start on Selected Weekdays at 2025-1-1 0:0:0 (Click To Change)</a>\n"
            "Backup Task Will Start on Selected Weekdays at 0:0:0 after 2025-1-1 \n");
        row(u"mirrored|--mode|now"_s + start, "0 2025 1 1 0 0 0 1 1 1 1 1 1 1 0\n"
                                              "Backup Task Will Start When Changes Are Detected\n");
        row(u"mirrored|--mode|weekly|--box|on"_s + padded,
            "2 2024 2 29 9 5 59 1 1 1 1 1 1 1 1\n"
            "Backup Task Will Start at 9:5:59 after 2024-2-29, On  Sun Mon Tues Wed Thur Fri Sat\n");
        row("snapshot|--mode|daily|--date|9999-12-31|--time|23:59:59",
            "1 9999 12 31 23 59 59 1 1 1 1 1 1 1 1\n"
            "Backup task will start at 23:59:59 every day after  9999-12-31\n");
        row(u"snapshot|--mode|weekly|--days|thu,tue|--box|off"_s + padded,
            "2 2024 2 29 9 5 59 0 0 1 0 1 0 0 0\n"
            "Backup Task Will Start at 9:5:59 after 2024-2-29, On  Tues Thurs\n");
        row(u"snapshot|--mode|weekly|--days|"_s + start,
            "2 2025 1 1 0 0 0 0 0 0 0 0 0 0 1\n"
            "Backup Task Will Start at 0:0:0 after 2025-1-1, On \n");
        row(u"snapshot|--mode|daily|--json"_s + start, "[{\"string\":\"1 2025 1 1 0 0 0 1 1 1 1 1 1 1 "
                                                       "1\\u000a\",\"link\":null,\"summary\":\"Backup task "
                                                       "will start at 0:0:0 every day after  2025-1-1\"}]\n");
    }

    void saysSchedules() {
        const auto [line, out] = Fetched<QString, QByteArray>();
        const Run run = Btaskctl(QStringList{u"schedule"_s, u"--form"_s} + line.split(u'|'));
        QCOMPARE(run.error, QByteArray());
        QCOMPARE(run.out, out);
        QCOMPARE(run.exit, CtlExit::Done);
    }

    void refusesSchedules_data() {
        const Columns<QString, QByteArray> row("line", "error");
        const QString start = u"|--date|2025-1-1|--time|0:0:0"_s;
        const QByteArray noDay = "At least one weekday needs to be selected!\n";
        row(u"dialog|--mode|weekly|--days|"_s + start, noDay);
        row(u"server|--mode|weekly|--days|"_s + start, noDay);
        const QByteArray noNow = "This form offers no --mode now: its backups run daily or weekly.\n";
        row(u"server|--mode|now"_s + start, noNow);
        row(u"snapshot|--mode|now"_s + start, noNow);
        row(u"dialog|--mode|now|--box|on"_s + start,
            "This form has no box: --box is for mirrored and snapshot.\n");
        row(u"dialog|--mode|daily|--days|sun,,mon"_s + start,
            "\"\": --days takes words of sun, mon, tue, wed, thu, fri, sat with commas between them.\n");
        row(u"dialog|--mode|hourly"_s + start, "--mode is one of now, daily, weekly.\n");
        const QByteArray noDate = "--date takes a day with a year of four digits, as in 2025-1-31.\n";
        for (const char* date : {"2025-2-29", "999-1-1", "10000-1-1", "2025-1", "2025-1-1-1", "2025-+1-1",
                                 "2025- 1-1", "0-0-0", ""})
            row(u"dialog|--mode|now|--time|0:0:0|--date|"_s + QLatin1String(date), noDate);
        for (const char* time : {"24:0:0", "0:60:0", "12:30", "noon", "-1:0:0"})
            row(u"dialog|--mode|now|--date|2025-1-1|--time|"_s + QLatin1String(time),
                "--time takes hour, minute and second, as in 22:30:0.\n");
    }

    void refusesSchedules() {
        const auto [line, error] = Fetched<QString, QByteArray>();
        const Run run = Btaskctl(QStringList{u"schedule"_s, u"--form"_s} + line.split(u'|'));
        QCOMPARE(run.error, error);
        QCOMPARE(run.out, QByteArray());
        QCOMPARE(run.exit, CtlExit::Usage);
    }

    void buildsTheFileIndex() {
        ServiceFixture service("empty");
        const QString files = QFile::decodeName(service->Home().string().c_str()) + u"/files"_s;
        QVERIFY(QDir().mkpath(files));
        for (const QString& name : {u"a.TXT"_s, u"b.odt"_s})
            QVERIFY(QFile(files + u'/' + name).open(QIODevice::WriteOnly));
        const auto index = [](const QStringList& options = {}) {
            return Btaskctl(QStringList{u"index"_s} + options);
        };
        const Run absent = index();
        QCOMPARE(absent.exit, CtlExit::Refused);
        QVERIFY(absent.error.contains("file monitor service"));

        const AgentService monitor("BrenFileMonSvc");
        using Kind = devservice::FileMonitorSwitch::Kind;
        service->SetFileMonitor({Kind::Running});
        QCOMPARE(index({u"--wait"_s}).exit, CtlExit::Done);
        QCOMPARE(ReadHighestFileRow({}), std::optional<qint64>(2));
        QVERIFY(QFile::remove(files + u"/a.TXT"_s));
        QCOMPARE(index({u"--wait"_s}).exit, CtlExit::Done); // it was built before: nothing to do
        QCOMPARE(ReadHighestFileRow({}), std::optional<qint64>(2));
        QCOMPARE(index({u"--force"_s, u"--wait"_s}).exit, CtlExit::Done);
        QCOMPARE(ReadHighestFileRow({}), std::optional<qint64>(1));

        service->SetFileMonitor({Kind::Failing});
        std::chrono::milliseconds waited{0};
        const Run late = Btaskctl({u"index"_s, u"--force"_s, u"--wait"_s}, {}, {},
                                  [&waited](const std::stop_token&, std::chrono::milliseconds time) {
                                      waited += time;
                                      return true;
                                  });
        QCOMPARE(late.exit, CtlExit::Refused);
        QCOMPARE(late.error, "The index was not built within 10 minutes.\n");
        QCOMPARE(waited, std::chrono::minutes(10));
    }
};

BTASK_TEST(BackupCommandsTest);
#include "BackupCommandsTest.moc"
