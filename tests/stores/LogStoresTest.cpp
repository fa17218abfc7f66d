#include "Reading.h"
#include "stores/AuditTraceStore.h"
#include "stores/FileIndexStore.h"
#include "stores/HistoryStore.h"
#include "stores/ProcessLogStore.h"
#include "support/RegistryText.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;
using File = devservice::Database;
namespace fs = std::filesystem;

namespace {

QStringList AuditRows(const AuditFilter& filter) {
    QStringList traces;
    const ReadResult read = AuditTraceStore().EnumTraces(filter, [&traces](const AuditRecord& row) {
        traces += AuditMessage(row.trace);
        return true;
    });
    return read ? traces : QStringList(read.Sentence());
}

void PutAuditRows(ServiceFixture& service, const char* values) {
    service->Execute(service->DatabaseFile(File::AuditTrace),
                     std::string("INSERT INTO AuditTrace ") + values);
}

constexpr char FourDays[] = "VALUES(0,'$$KEY$ first','2025-03-03 23:59:59'),(1,'$$KEY$ second','2025-03-04 "
                            "00:00:00'),(2,'$$OTHER$ third','2025-03-05 12:00:00'),(7,NULL,'2025-03-06 "
                            "00:00:00')";

const QString MonitorKey = u"SOFTWARE\\Brenvia\\FileMonSvc"_s;

} // namespace

class LogStoresTest : public QObject {
    Q_OBJECT

private slots:
    void theProcessLogOfATask() {
        ServiceFixture service;
        service->Execute(service->DatabaseFile(File::ProcessLog),
                         "INSERT INTO TaskProcessLog VALUES(1,'T','start','stop',NULL,5,6,7),"
                         "(2,'t','x','x','x',1,1,1),(3,'T','','','why',0,-1,0)");
        std::vector<ProcessLogRecord> list(1);
        ProcessLogStore store;
        QVERIFY(store.FillProcessLog(u"none"_s, list));
        QCOMPARE(list.size(), size_t(1));
        QVERIFY(store.FillProcessLog(u"T"_s, list));
        QCOMPARE(list.size(), size_t(3));
        QCOMPARE(list[1].startTime, u"start"_s);
        QCOMPARE(list[1].stopTime, u"stop"_s);
        QVERIFY(list[1].stopReason.isNull());
        QCOMPARE(list[1].totalSubTasks, 5);
        QCOMPARE(list[1].failedSubTasks, 6);
        QCOMPARE(list[1].processedSubTasks, 7);
        QCOMPARE(list[2].stopReason, u"why"_s);
        QCOMPARE(list[2].failedSubTasks, -1);
    }

    void theHistoryOfAFolder_data() {
        const Columns<HistoryView, int> row("view", "rows");
        row("changes", HistoryView::ChangeList, 200);
        row("summary", HistoryView::Summary, 50);
    }

    void theHistoryOfAFolder() {
        const auto [view, rows] = Fetched<HistoryView, int>();
        ServiceFixture service;
        // Two of each moment; the later in the table is the earlier by name.
        service->Execute(
            service->DatabaseFile(File::History),
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<250) INSERT INTO "
            "History SELECT printf('%05d',9999-i),'m#'||i,'U','C','V',i/2 FROM n; INSERT INTO "
            "History VALUES('other','a#1','U','C','v',999)");
        std::vector<HistoryRecord> list;
        QVERIFY(FillHistory(view, u"V"_s, list));
        QCOMPARE(int(list.size()), rows);
        const HistoryRecord& last = list[0];
        QCOMPARE(last.uri + last.operation + last.updater + last.computer, u"09749m#250UC"_s);
        const auto moment = [](const HistoryRecord& row) { return row.operation.mid(2).toInt() / 2; };
        for (size_t i = 1; i < list.size(); ++i) {
            QVERIFY(moment(list[i - 1]) >= moment(list[i]));
            if (view == HistoryView::Summary && moment(list[i - 1]) == moment(list[i]))
                QVERIFY(list[i - 1].uri < list[i].uri);
        }
    }

    void theAuditTraceByFilter_data() {
        const Columns<AuditFilter, QStringList> row("filter", "traces");
        const QString third = AuditTime(QDate(2025, 3, 3));
        const QString fourth = AuditTime(QDate(2025, 3, 4));
        const QString fifth = AuditTime(QDate(2025, 3, 5));
        const QStringList all{QString(), u"third"_s, u"second"_s, u"first"_s};
        row("all", {}, all);
        row("text", {u"KEY"_s, {}, {}}, {u"second"_s, u"first"_s});
        row("text in any case", {u"key$ F"_s, {}, {}}, {u"first"_s});
        row("empty text", {u""_s, {}, {}}, {u"third"_s, u"second"_s, u"first"_s});
        row("range without its last day", {{}, std::pair(third, fifth), {}}, {u"second"_s, u"first"_s});
        row("range that ends at a midnight", {{}, std::pair(third, fourth), {}}, {u"second"_s, u"first"_s});
        row("swapped range", {{}, std::pair(fifth, third), {}}, {u"second"_s, u"first"_s});
        row("equal days", {{}, std::pair(fourth, fourth), {}}, {QString(), u"third"_s, u"second"_s});
        row("text and range", {u"R"_s, std::pair(fourth, fourth), {}}, {u"third"_s});
        row("zero", {{}, {}, u"0"_s}, all);
        row("two zeros", {{}, {}, u"00"_s}, {});
        row("maximum", {u"KEY"_s, {}, u"1"_s}, {u"second"_s});
    }

    void theAuditTraceByFilter() {
        QFETCH(const AuditFilter, filter);
        ServiceFixture service;
        PutAuditRows(service, FourDays);
        QTEST(AuditRows(filter), "traces");
    }

    void aFilterThatIsNoSqlFailsQuietly() {
        ServiceFixture service;
        PutAuditRows(service, FourDays);
        const auto read = [](const AuditFilter& filter) {
            return AuditTraceStore().EnumTraces(filter, [](const AuditRecord&) { return true; }).outcome;
        };
        for (const AuditFilter& filter :
             std::initializer_list<AuditFilter>{{u"it's"_s, {}, {}}, {{}, {}, u"many"_s}, {{}, {}, u"1.5"_s}})
            QCOMPARE(read(filter), ReadOutcome::BadStatement);
        QCOMPARE(read({u"x'; DELETE FROM AuditTrace; --"_s, {}, {}}), ReadOutcome::Done);
        QCOMPARE(AuditRows({}).size(), 4);
        QCOMPARE(Traces(service.Home()).filter(u"syntax"_s), QStringList());
    }

    void whatIsAddedLaterIsReadOnce() {
        ServiceFixture service;
        PutAuditRows(service, FourDays);
        qint64 end = 0;
        QStringList traces;
        const auto take = [&traces](const AuditRecord& row) {
            traces += row.trace;
            return true;
        };
        QVERIFY(AuditTraceStore().EnumTraces({{}, {}, u"1"_s}, end, take));
        QCOMPARE(traces.size(), 1);
        traces.clear();
        const auto readNew = [&](const AuditFilter& filter) {
            traces.clear();
            const bool read(AuditTraceStore().EnumNewTraces(filter, end, take));
            return read ? traces.join(u'|') : u"failed"_s;
        };
        QCOMPARE(readNew({}), QString());
        PutAuditRows(service, "VALUES(0,'older',''),(1,'not this','2026'),(2,'newer','2025')");
        QCOMPARE(readNew({u"er"_s, {}, u"1"_s}), u"older|newer"_s);
        QCOMPARE(readNew({}), QString());
        service->Execute(service->DatabaseFile(File::AuditTrace), "DELETE FROM AuditTrace");
        QCOMPARE(readNew({}), QString());
        PutAuditRows(service, "VALUES(0,'number one again','2026')");
        QCOMPARE(readNew({{}, std::pair(u"2026"_s, u"2026"_s), {}}), u"number one again"_s);
    }

    void aMessageHasNoKey_data() {
        const Columns<QString, QString> row("trace", "message");
        row("key", "$$T-1$ message $x", "message $x");
        row("empty key", "$$$ message", "message");
        row("any character behind the key", "$$T$message", "essage");
        row("only a key", "$$T$", "");
        row("key without end", "$$T message", "");
        row("one sign", "$T$ message", "$T$ message");
        row("key within", "a $$T$ message", "a $$T$ message");
    }

    void aMessageHasNoKey() {
        QFETCH(const QString, trace);
        QTEST(AuditMessage(trace), "message");
    }

    void deletesTheTracesOfOneTask_data() {
        const Columns<QString, bool, int> row("key", "done", "left");
        row("identifier", "{KEY-1}", true, 2);
        row("unknown identifier", "{NONE}", true, 4);
        for (const char* wide : {"", "%", "$", "KEY", "KEY-1", "{}", "{-}", "{KEY-1", "KEY-1}", "{K%}",
                                 "{KEY_1}", "{KEY-1}\n", "' OR '1'='1", "{x'; --}"})
            row(wide, wide, false, 4);
    }

    void deletesTheTracesOfOneTask() {
        QFETCH(const QString, key);
        ServiceFixture service;
        PutAuditRows(service, FourDays);
        service->Execute(service->DatabaseFile(File::AuditTrace),
                         "UPDATE AuditTrace SET Trace=replace(Trace,'KEY','{KEY-1}')");
        QTEST(bool(DeleteTaskTraces(key)), "done");
        QTEST(int(AuditRows({}).size()), "left");
    }

    void aDeleteThatMeetsALockIsTold() {
        ServiceFixture service;
        PutAuditRows(service, FourDays);
        service->SetFault(devservice::DatabaseFault::Locked, File::AuditTrace);
        QCOMPARE(DeleteTaskTraces(u"{KEY}"_s).outcome, ReadOutcome::Busy);
        service->SetFault(devservice::DatabaseFault::Missing, File::AuditTrace);
        QCOMPARE(DeleteTaskTraces(u"{KEY}"_s).outcome, ReadOutcome::Missing);
        QVERIFY(!fs::exists(service->DatabaseFile(File::AuditTrace)));
        service->ClearFaults();
        QCOMPARE(AuditRows({}).size(), 4);
        std::stop_source stop;
        stop.request_stop();
        QCOMPARE(DeleteTaskTraces(u"{KEY}"_s, stop.get_token()).outcome, ReadOutcome::Stopped);
        QCOMPARE(AuditRows({}).size(), 4);
    }

    void aLongAuditWalkStops() {
        constexpr int Rows = 100'000;
        ServiceFixture service;
        PutAuditRows(service, "SELECT 0,'$$KEY$ row','2025' FROM (WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL "
                              "SELECT i+1 FROM n WHERE i<100000) SELECT i FROM n)");
        int rows = 0;
        AuditTraceStore all;
        QVERIFY(all.EnumTaskTraces(u"KEY"_s, [&rows](const AuditRecord&) { return ++rows > 0; }));
        QCOMPARE(rows, Rows);
        std::stop_source stop;
        AuditTraceStore stopped(stop.get_token());
        const ReadResult read = stopped.EnumTaskTraces(u"KEY"_s, [&](const AuditRecord&) {
            stop.request_stop();
            return --rows > 0;
        });
        QCOMPARE(read.outcome, ReadOutcome::Stopped);
        QVERIFY(rows > Rows * 9 / 10);
    }

    void filesOfAnExtensionInTheOrderOfTheirPaths() {
        ServiceFixture service;
        service->Execute(service->DatabaseFile(File::FileIndex),
                         "INSERT INTO FileDB VALUES('/c.txt','txt',1,''),('/a.txt','txt',1,''),"
                         "(NULL,'txt',1,''),('/b.TXT','TXT',1,''),('/b.txt','txt',1,'')");
        const auto files = [](qsizetype wanted) {
            QStringList paths;
            FileIndexStore store;
            const ReadResult read = store.EnumFilesByExt(u"txt"_s, [&](const QString& path) {
                paths += path;
                return paths.size() < wanted;
            });
            return read ? paths : QStringList(read.Sentence());
        };
        QCOMPARE(files(9), (QStringList{u"/a.txt"_s, u"/b.txt"_s, u"/c.txt"_s}));
        QCOMPARE(files(2), (QStringList{u"/a.txt"_s, u"/b.txt"_s}));
    }

    void theFileIndexStandsWhereItsMonitorSays_data() {
        // %1 is the home; no folder: the location is no place
        const Columns<QString, QString> row("location", "folder");
        row("plain", "%1/deep/folder", "%1/deep/folder/JounralDB");
        row("backslash", "%1/deep/folder\\", "%1/deep/folder/JounralDB");
        row("other letters", "%1/€ ü", "%1/€ ü/JounralDB");
        row("relative", "folder", {});
        row("drive", "D:\\", fs::path("D:\\").is_absolute() ? "D:/JounralDB" : "");
    }

    void theFileIndexStandsWhereItsMonitorSays() {
        auto [location, folder] = Fetched<QString, QString>();
        ServiceFixture service;
        const RegistryText value(platform::RegistryRoot::LocalMachine, MonitorKey, u"DBLocation"_s,
                                 location.replace(u"%1"_s, service.Home()));
        folder.replace(u"%1"_s, service.Home());
        QCOMPARE(QString::fromStdU16String(FileIndexFolder().generic_u16string()), folder);
        QVERIFY(!folder.startsWith(service.Home()) || QDir(folder).exists());
        QVERIFY(!fs::exists("folder/JounralDB"));
    }

    void theFileIndexHasAPlaceOfItsOwn() {
        ServiceFixture service;
        for (const auto& [name, text] : {std::pair(u"DBLocation"_s, u""_s), std::pair(u"Other"_s, u"x"_s),
                                         std::pair(u"DBLocation"_s, u'/' + QString(260, u'x'))}) {
            const RegistryText location(platform::RegistryRoot::LocalMachine, MonitorKey, name, text);
            QVERIFY(QString::fromStdU16String(FileIndexFolder().generic_u16string())
                        .endsWith(u"/Brenvia/JounralDB"_s));
        }
    }
};

BTASK_TEST(LogStoresTest);
#include "LogStoresTest.moc"
