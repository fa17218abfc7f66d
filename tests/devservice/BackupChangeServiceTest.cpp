// Labels: threads
#include "RawHttp.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;
using namespace devservice;

/// How the service changes a backup by a record of a console's own.
class BackupChangeServiceTest : public QObject {
    Q_OBJECT

private slots:
    void changesWhatTheRecordSays_data() {
        const Columns<QByteArray, int, QByteArray> row("body", "status", "description");
        row("one field", "{1}\t\tB\nC\t\t\t\t\t\t\t\t", 200, "B\nC\t/V\t*");
        row("nothing", "{1}\t\t\t\t\t\t\t\t\t\t", 200, "A\t/V\t*");
        row("a line of the filter", "{1}\t\t\t\t\t\n.tmp\n\n\n\t\t\t\t\t", 200, "A\t/V\t*");
        row("too few lines", "{1}\t\t\t\t\t\n.tmp\n\n\t\t\t\t\t", 400, "A\t/V\t*");
        row("too few fields", "{1}\tN\tB", 400, "A\t/V\t*");
        row("no number", "{1}\t\tB\t\t\t\t\t\tx\t\t", 400, "A\t/V\t*");
        row("another type", "{1}\t\tB\t\t\t\t\t\t\t\tSnapshotbackup", 400, "A\t/V\t*");
        row("no such task", "{2}\t\tB\t\t\t\t\t\t\t\t", 404, "A\t/V\t*");
    }

    void changesWhatTheRecordSays() {
        const auto [body, status, description] = Fetched<QByteArray, int, QByteArray>();
        ServiceFixture service;
        Put(service);
        QCOMPARE(Send(service->Port(), Request("GET", "/schedule/changebackup", body + '\0')).Status(),
                 status);
        QCOMPARE(QByteArray::fromStdString(service->FindTask("{1}")->description), description);
    }

    void schedulesAnew() {
        ServiceFixture service;
        Put(service);
        const QByteArray record = "{1}\t\t\t\t\t\t2 2025 3 5 21 30 0 0 1 0 0 0 0 0 1\n\t\t\t\t";
        QCOMPARE(Send(service->Port(), Request("GET", "/schedule/changebackup", record)).Status(), 200);
        QCOMPARE(FormatTime(service->FindTask("{1}")->nextRun.value()), std::string("2025-03-10 21:30:00"));
        service->SetSetting("ConsoleRecords", "0");
        QCOMPARE(Send(service->Port(), Request("GET", "/schedule/changebackup", record)).Status(), 404);
    }

private:
    static void Put(ServiceFixture& service) {
        Task task = MakeTask("{1}", "Photos");
        task.description = "A\t/V\t*";
        service->PutTask(task);
    }
};

BTASK_TEST(BackupChangeServiceTest);
#include "BackupChangeServiceTest.moc"
