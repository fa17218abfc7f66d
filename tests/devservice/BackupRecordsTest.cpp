// Labels: threads
#include "RawHttp.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace devservice;

namespace {

const QByteArray Folders =
    "Office\tC:\\Docs\nD:\\Work\t/V/Office\tC:\\Docs\\Old\t*\n.tmp\nthumbs.db;\nNoSys\nNoHidden\t"
    "1 2025 3 5 21 30 0 1 1 1 1 1 1 1 1\n\t10\t0\t0\tSnapshotbackup";
const QByteArray Applications =
    "Data\tA({11111111-2222-4333-8444-555555555551})\nB({11111111-2222-4333-8444-555555555552})/x\t/V/Data\t"
    "A({11111111-2222-4333-8444-555555555551})/y\t10\t5\t2 2025 3 1 0 0 0 0 0 0 0 0 0 1 0\n\t0\t";

QByteArray Changed(QByteArray record, const QByteArray& from, const QByteArray& to) {
    const qsizetype at = record.lastIndexOf(from);
    return at < 0 ? QByteArray() : record.replace(at, from.size(), to);
}

} // namespace

/// The records by which backups are made, and the list of writers.
class BackupRecordsTest : public QObject {
    Q_OBJECT

private slots:
    void makesTasksThatRun_data() {
        // The clock starts at 9:00 on Tuesday, the 4th of March 2025.
        const Columns<QByteArray, QByteArray, QByteArray, QByteArray> row("request", "record", "next run",
                                                                          "type");
        const QByteArray daily = "1 2025 3 5 21 30 0 1 1 1 1 1 1 1 1\n";
        const QByteArray mirrored = Changed(Folders, "Snapshotbackup", "Backup");
        row("snapshot, at once", "backupex", Folders, "2025-03-04 09:00:00", "Snapshotbackup");
        row("snapshot, later", "backupex", Changed(Folders, daily, "1 2025 3 5 21 30 0 1 1 1 1 1 1 1 0\n"),
            "2025-03-05 21:30:00", "Snapshotbackup");
        row("mirrored, daily", "backupex", mirrored, "2025-03-05 21:30:00", "Backup");
        row("mirrored, changes", "backupex", Changed(mirrored, daily, "0 2025 3 5 21 30 0 1 1 1 1 1 1 1 0\n"),
            "2025-03-04 09:00:00", "Backup");
        row("by type", "backupex",
            "T\t@\t/V\t*\t.jpg, .png\n*\n*\nNoSys\nNoHidden\t" + daily + "\t10\t0\t0\tBackup",
            "2025-03-05 21:30:00", "Backup");
        row("applications on Saturdays", "advbackup", Applications, "2025-03-08 00:00:00", "AdvBackup");
    }

    void makesTasksThatRun() {
        const auto [request, record, nextRun, type] =
            Fetched<QByteArray, QByteArray, QByteArray, QByteArray>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"V", "{C}"}});
        const Exchange exchange =
            Send(service->Port(), Request("GET", "/schedule/" + request, record + '\0'));
        QCOMPARE(exchange.Status(), 200);
        const auto task = service->FindTask(exchange.Body().toStdString());
        QVERIFY(task);
        const QByteArrayList fields = record.split('\t');
        QCOMPARE(QByteArray::fromStdString(task->description), fields.mid(1, 3).join('\t'));
        QCOMPARE(QByteArray::fromStdString(task->type), type);
        QCOMPARE(QByteArray::fromStdString(FormatTime(*task->nextRun)), nextRun);
        QCOMPARE(uchar(task->schedule.ToBlob()[4]), uchar(fields[request == "backupex" ? 5 : 6][0] - '0'));
        service->Advance(*task->nextRun - service->Now() + std::chrono::hours(1));
        QCOMPARE(service->FindTask(task->id)->runCount > 0, true);
    }

    void refusesWithAReason_data() {
        const Columns<QByteArray, QByteArray, QByteArray> row("record", "changed to", "reason");
        const auto change = [&row](const char* name, const QByteArray& record, const QByteArray& from,
                                   const QByteArray& to, const QByteArray& reason) {
            row(name, record, Changed(record, from, to), reason);
        };
        change("a field more", Folders, "\t0\tSnap", "\t0\t\tSnap", "it has 11 fields and not 10");
        change("a field less", Folders, "\t/V/Office", "", "it has 9 fields");
        change("unknown type", Folders, "Snapshotbackup", "snapshot", "\"snapshot\" is no type");
        change("continuous snapshot", Folders, "1 2025", "0 2025", "\"0\" is no number from 1 to 2");
        change("no such day", Folders, "2025 3 5", "2025 2 29", "a day that is not");
        change("leading zero", Folders, "21 30 0", "21 30 00", "\"00\" is no number");
        change("a number less", Folders, " 1 1\n", " 1\n", "has 14 numbers");
        change("no line feed", Folders, " 1 1\n", " 1 1", "does not end with a line feed");
        change("four filter lines", Folders, "\nNoHidden", "", "have 4 lines");
        change("odd filter", Folders, "NoSys", "nosys", "say \"nosys\"");
        change("empty source", Folders, "C:\\Docs\nD:", "\nD:", "hold an empty line");
        change("types and folders", Folders, "D:\\Work", "@", "names folders beside");
        change("not mounted", Folders, "/V/", "/W/", "in no mounted virtual directory");
        change("no mark", Folders, "\t0\tSnap", "\t1\tSnap", "lacks the mark");
        change("no key", Changed(Folders, "\t0\tSnap", "\t1\tSnap"), "Office\tC:\\Docs\n",
               "Office[Encrypted]\tC:\\Docs\n", "no key is stored");
        change("retention", Folders, "\t10\t", "\tten\t", "\"ten\" is no number");
        change("no UTF-8", Folders, "Work", "W\xFFrk", "no text of UTF-8");
        change("doubled tab", Applications, "\t0\t", "\t\t0\t", "it has 10 fields and not 9");
        change("no last tab", Applications, "\t0\t", "\t0", "it has 8 fields");
        change("no key of a writer", Applications, "B({", "B{", "is no key");
        change("left out of nothing", Applications, "A({11111111-2222-4333-8444-555555555551})/y",
               "C({11111111-2222-4333-8444-555555555551})/y", "is no component of what is selected");
    }

    void refusesWithAReason() {
        const auto [record, changed, reason] = Fetched<QByteArray, QByteArray, QByteArray>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"V", "{C}"}});
        const QByteArray path = record.endsWith('\t') ? "/schedule/advbackup" : "/schedule/backupex";
        const Exchange exchange = Send(service->Port(), Request("GET", path, changed));
        QCOMPARE(exchange.Status(), 400);
        QVERIFY2(exchange.Body().contains(reason), exchange.Body());
        QVERIFY(service->Tasks().empty());
        Connection trace(service->DatabaseFile(Database::AuditTrace));
        Statement rows(trace, "SELECT Trace FROM AuditTrace WHERE Level=2");
        QVERIFY(rows.Step());
        QCOMPARE(QByteArray::fromStdString(rows.Text(0)) + '\n', exchange.Body());
    }

    void listsWritersAsTold_data() {
        const Columns<QByteArray, int, int> row("writers", "lines", "least octets");
        row("usual", 23, 1500);
        row("malformed", 33, 2000);
        row("empty", 1, 0);
        row("large", 1001, 10'000'000);
    }

    void listsWritersAsTold() {
        const auto [writers, lines, least] = Fetched<QByteArray, int, int>();
        ServiceFixture service;
        QCOMPARE(Send(service->Port(), Request("PUT", "/dev/writers?" + writers)).Status(), 200);
        const Exchange exchange = Send(service->Port(), Request("GET", "/backupsvr/writers"));
        QCOMPARE(exchange.Status(), 200);
        QCOMPARE(exchange.Body().count('\n') + 1, lines);
        QVERIFY(exchange.Body().size() >= least);
        QCOMPARE(Send(service->Port(), Request("PUT", "/dev/writers?none")).Status(), 400);
    }
};

BTASK_TEST(BackupRecordsTest);
#include "BackupRecordsTest.moc"
