#include "support/TestMain.h"
#include "taskman/RunningText.h"
#include "taskman/SubTaskText.h"
#include "taskman/TransferMeter.h"

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

struct Transfer {
    const char* file;
    quint64 done;
    quint64 total;
};

struct MeterStep {
    std::chrono::milliseconds at;
    std::vector<Transfer> transfers;
    quint64 done;
    quint64 left;
    std::optional<quint32> secondsLeft;
};
class TaskTextTest : public QObject {
    Q_OBJECT

private slots:
    void namesSubTasks_data() {
        using enum TransferDirection;
        const Columns<QString, QString, QString, TransferDirection> row("type", "parameter", "name",
                                                                        "direction");
        const QString marker = u"x/43811DCD-8C5A-4EF9-B903-2EEA9CE88487/y"_s;
        row(u"PUT"_s, u"a"_s, u"Upload"_s, Upload);
        row(u"put"_s, u"/ChangeLog/1"_s, u"Upload"_s, Upload);
        row(u"GET"_s, u"a"_s, u"Download"_s, Download);
        row(u"Get"_s, u"/ChangeLog/1"_s, u"Receive Change Notification"_s, Download);
        row(u"get"_s, u"a/ChangeLog"_s, u"Download"_s, Download);
        row(u"DPUT"_s, u"a"_s, u"Upload"_s, Upload);
        row(u"dput"_s, u"/ChangeLog/1"_s, u"Send Change Notification"_s, Upload);
        row(u"dput"_s, u"/changelog/1"_s, u"Upload"_s, Upload);
        row(u"DeleteFolder"_s, {}, u"Delete Directory"_s, None);
        row(u"DROPSYNC"_s, u"a"_s, u"Apply File Change"_s, None);
        row(u"dropsync"_s, marker, u"Re-Sync Cloud Sync Folder"_s, None);
        row(u"DROPFOLDERSYNCFORCE"_s, marker, u"Force Re-Sync Cloud Sync Folder"_s, None);
        row(u"DropUpload"_s, {}, u"Upload Local Changed File"_s, Upload);
        row(u"bput"_s, {}, u"Upload File Snapshot"_s, Upload);
        row(u"restorecommit"_s, {}, u"Commit Restore"_s, None);
        row(u"Puts"_s, u"/ChangeLog/1"_s, u"Puts"_s, None);
        row({}, {}, {}, None);
    }

    void namesSubTasks() {
        const auto [type, parameter] = Fetched<QString, QString>();
        QTEST(SubTaskName(type, parameter), "name");
        QTEST(DirectionOfSubTask(type), "direction");
    }

    void shortensParameters_data() {
        const Columns<QString, QString> row("parameter", "shown");
        row("below a base", "/home/mara/Photos/2024/a.jpg", "2024/a.jpg");
        row("the other separator", "C:\\Data\\books\\b.txt", "books\\b.txt");
        row("a base that ends with one", "D:\\b.txt", "b.txt");
        row("a base's name goes on", "/home/mara/Photos2/a.jpg", "/home/mara/Photos2/a.jpg");
        row("a base itself", "/home/mara/Photos", "/home/mara/Photos");
        row("a base itself, closed", "/home/mara/Photos/", "/home/mara/Photos/");
        row("elsewhere", "/srv/a.jpg", "/srv/a.jpg");
        row("added", "a.txt.###a", "New(a.txt)");
        row("deleted", "a.txt.###d", "Delete(a.txt)");
        row("modified, below a base", "C:\\Data\\a.txt.###m", "Change(a.txt)");
        row("the last entry counts", "a.###m.###d", "Delete(a.###m)");
        row("another letter", "a.txt.###z", "a.txt.###z");
        row("no letter", "a.txt.###", "a.txt.###");
        row("two letters", "a.txt.###md", "a.txt.###md");
        row("not at the end", "a.###m/b", "a.###m/b");
        row("empty", {}, {});
    }

    void shortensParameters() {
        QFETCH(QString, parameter);
        QTEST(ShownParameter(parameter, {QString(), u"/home/mara/Photos"_s, u"C:\\Data"_s, u"D:\\"_s}),
              "shown");
    }

    void findsSources() {
        QCOMPARE(SourcesOf(u"/a\nC:\\b\n\t/target\t*.tmp"_s), QStringList({u"/a"_s, u"C:\\b"_s}));
        QCOMPARE(SourcesOf(u"/a"_s), QStringList{u"/a"_s});
        QCOMPARE(SourcesOf({}), QStringList());
    }

    void showsFileNames() {
        const std::pair<QString, QString> names[] = {
            {u"report.doc"_s, u"report.doc"_s},
            {u"report.doc.BODPART_3"_s, u"report.doc    PART_3"_s},
            {u"report.doc.BOD"_s, u"report.doc"_s},
            {u"report.doc.BOD.tmp"_s, u"report.doc"_s},
            {u"report.doc.BODPART"_s, u"report.doc"_s},
            {u"report.doc.bodpart_3"_s, u"report.doc.bodpart_3"_s},
            {u"a.BOD.BODPART_12"_s, u"a.BOD    PART_12"_s},
        };
        for (const auto& [name, shown] : names)
            QCOMPARE(ShownFileName(name), shown);
    }

    void saysWhatAnOperationDoes() {
        QCOMPARE(OperationCell(u"Upload"_s), u"#ICON:209#@@Uploading..."_s);
        QCOMPARE(OperationCell(u"Download"_s), u"#ICON:210#@@Downloading..."_s);
        QCOMPARE(OperationCell(u"List Directory"_s), u"#ICON:211#@@List Directory..."_s);
    }

    void metersTransfers_data() {
        const Columns<std::vector<MeterStep>> row("steps");
        const MeterStep first{0s, {{"a", 100, 1000}}, 100, 900, {}};
        const MeterStep second{2s, {{"a", 300, 1000}}, 300, 700, 7};
        row("the speed is known from the second sample on", {first, second});
        row("one ended meanwhile, another began: the speed is that of what is seen",
            {first, second, {4s, {{"b", 100, 600}}, 100, 500, 10}});
        row("one ended and nothing else has moved: the last speed stays",
            {first, second, {4s, {{"b", 0, 600}}, 0, 600, 6}});
        row("a pause between two files keeps the speed, and is no time of work",
            {first, second, {4s, {}, 0, 0, 0}, {100s, {{"b", 0, 200}}, 0, 200, 2}});
        row("a transfer that begins anew has moved nothing",
            {first, second, {4s, {{"a", 50, 1000}}, 50, 950, 9}});
        row("two samples of one moment", {first, {0s, {{"a", 500, 1000}}, 500, 500, {}}});
        row("a transfer stands still", {first, {2s, {{"a", 100, 1000}}, 100, 900, {}}});
        row("more done than there is", {first, {1s, {{"a", 1200, 1000}}, 1000, 0, 0}});
        row("what moves nothing does not count", {{0s, {{"a", 5, 0}}, 0, 0, {}}});
        row("beyond 32 bits of seconds",
            {{0s, {{"a", 0, ~quint64(0)}}, 0, ~quint64(0), {}},
             {1s, {{"a", 1, ~quint64(0)}}, 1, ~quint64(0) - 1, std::numeric_limits<quint32>::max()}});
    }

    void metersTransfers() {
        QFETCH(std::vector<MeterStep>, steps);
        const TransferMeter::Clock::time_point start{1000s};
        TransferMeter meter;
        for (const MeterStep& step : steps) {
            std::vector<RunningSubTask> running;
            for (const Transfer& transfer : step.transfers) {
                RunningSubTask& subTask = running.emplace_back();
                subTask.fileName = QString::fromLatin1(transfer.file);
                subTask.bytesDone = transfer.done;
                subTask.bytesTotal = transfer.total;
            }
            const TransferProgress progress = meter.Sample(running, start + step.at);
            QCOMPARE(progress.done, step.done);
            QCOMPARE(progress.left, step.left);
            QCOMPARE(progress.secondsLeft, step.secondsLeft);
        }
    }

    void tellsWhatIsLeft() {
        QCOMPARE(TransferText({2048, 3072, {}}), u"2.000 KB transferred"_s);
        QCOMPARE(TransferText({2048, 3072, 80}), u"2.000 KB, 3.000 KB (00:01:20) Remaining"_s);
    }
};

BTASK_TEST(TaskTextTest);

#include "TaskTextTest.moc"
