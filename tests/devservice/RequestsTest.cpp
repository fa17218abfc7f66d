// Labels: threads
#include "RawHttp.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QTcpServer>
#include <QTcpSocket>

using namespace Qt::Literals::StringLiterals;
using namespace devservice;

constexpr char TaskId[] = "{00000000-0000-4000-8000-000000000001}";

class RequestsTest : public QObject {
    Q_OBJECT

private slots:
    void keepsWhatCameOverTheWire() {
        ServiceFixture service;
        const QByteArray body("na\xC3\xAFve\0", 7);
        Send(service->Port(), Request("PROPFIND", "/resources/a%20b?x=%d&y", body));
        const std::vector<ReceivedRequest> requests = service->Requests();
        QCOMPARE(requests.size(), size_t(1));
        QCOMPARE(QByteArray::fromStdString(requests[0].verb), QByteArray("PROPFIND"));
        QCOMPARE(QByteArray::fromStdString(requests[0].target), QByteArray("/resources/a%20b?x=%d&y"));
        QCOMPARE(QByteArray::fromStdString(requests[0].body), body);
        QCOMPARE(QByteArray::fromStdString(requests[0].Header("host")), QByteArray("127.0.0.1"));
    }

    void answersByState_data() {
        const Columns<QByteArray, int, QByteArray> row("request", "status", "body");
        const QByteArray id = "%7B" + QByteArray(TaskId).mid(1, 36) + "%7D";
        const QByteArray list =
            "<?xml version=\"1.0\" encoding=\"utf-8\"?><Response><VDirs><VDir Name=\"A &amp; &quot;B&quot;\" "
            "SafeCardId=\"{C}\" Status=\"2\" SPId=\"{P}\"/></VDirs></Response>";
        row("setting never set", Request("GET", "/settings/Never"), 404, {});
        row("setting without a type", Request("PUT", "/settings/A?Value=1"), 400, {});
        row("start", Request("GET", "/schedule/startnow?" + id), 200, {});
        row("unknown task", Request("GET", "/schedule/startnow?{no}"), 404, {});
        row("unknown command", Request("GET", "/schedule/stop?" + id), 404, {});
        row("sub-task", Request("GET", "/schedule/delsub?" + id + ":2"), 200, {});
        row("unknown sub-task", Request("GET", "/schedule/delsub?" + id + ":9"), 404, {});
        row("no number", Request("GET", "/schedule/delsub?" + id + ":x"), 404, {});
        row("directories, literal", Request("GET", "/profile/%d?PMCMethod=GetVdirList"), 200, list);
        row("directories, counted", Request("GET", "/profile/17?pmcmethod=getvdirlist"), 200, list);
        row("status", Request("GET", "/profile/?PMCMethod=GetVDirStatus", QByteArray("a & \"b\"\0", 8)), 200,
            "2");
        row("status of none", Request("GET", "/profile/?PMCMethod=GetVDirStatus", "C"), 404, {});
        row("nothing", Request("GET", "/"), 404, {});
    }

    void answersByState() {
        const auto [request, status, body] = Fetched<QByteArray, int, QByteArray>();
        ServiceFixture service;
        service->PutTask(MakeTask(TaskId, "Task"));
        service->PutSubTasks(TaskId, {MakeSubTask(1, "PUT", "a"), MakeSubTask(2, "PUT", "b")});
        service->SetVirtualDirectories({{"A & \"B\"", "{C}", 2, "{P}"}});
        const Exchange exchange = Send(service->Port(), request);
        QCOMPARE(exchange.Status(), status);
        if (!body.isEmpty())
            QCOMPARE(exchange.Body(), body);
    }

    void settingsSurviveTheService_data() {
        const Columns<QByteArray, QByteArray> row("sent", "kept");
        row("escapes", "a%0Ab%09c%20d%C3%A4", "a\nb\tc d\xC3\xA4");
        row("plus and lone percent", "a+b%zz%", "a+b%zz%");
        row("empty", {}, {});
        row("64 KB", QByteArray(65536, 'x'), QByteArray(65536, 'x'));
    }

    void settingsSurviveTheService() {
        const auto [sent, kept] = Fetched<QByteArray, QByteArray>();
        ServiceFixture service;
        QCOMPARE(
            Send(service->Port(), Request("PUT", "/settings/{id}/Na%6De?ValueType=2&Value=" + sent)).Status(),
            200);
        service->Stop();
        service->Start();
        const Exchange exchange = Send(service->Port(), Request("GET", "/settings/%7Bid%7D/Name"));
        QCOMPARE(exchange.Status(), 200);
        QCOMPARE(exchange.Body(), kept);
    }

    void faultsEndByThemselvesOrByRequest() {
        ServiceFixture service;
        HttpFaultSwitch twice;
        twice.fault = HttpFault::WrongStatus;
        twice.status = 500;
        twice.times = 2;
        service->SetFault(twice);
        const QByteArray request = Request("PUT", "/settings/A?ValueType=1&Value=1");
        QList<int> statuses;
        for (int i = 0; i < 3; ++i)
            statuses << Send(service->Port(), request).Status();
        QCOMPARE(statuses, (QList<int>{500, 500, 200}));

        // One that answers badly has acted, one that denies has not.
        service->SetFault("status:503@/settings/Acted");
        QCOMPARE(Send(service->Port(), Request("PUT", "/settings/Acted?ValueType=1&Value=1")).Status(), 503);
        QVERIFY(service->Setting("Acted"));
        service->SetFault("deny:503@/settings/Denied");
        QCOMPARE(Send(service->Port(), Request("PUT", "/settings/Denied?ValueType=1&Value=1")).Status(), 503);
        QVERIFY(!service->Setting("Denied"));
        QVERIFY(service.RequestLines().last().contains("Denied"_L1));

        // The request that closes the port is answered all the same, though not before the port is closed:
        // the next one never slips through. Given a time, the port opens again.
        QCOMPARE(Send(service->Port(), Request("PUT", "/dev/fault?refuse")).Status(), 200);
        QCOMPARE(Send(service->Port(), request).end, QAbstractSocket::ConnectionRefusedError);
        service->ClearFaults();
        QCOMPARE(Send(service->Port(), Request("PUT", "/dev/fault?refuse:100")).Status(), 200);
        QTRY_COMPARE(Send(service->Port(), request).Status(), 200);
        QCOMPARE(Send(service->Port(), Request("PUT", "/dev/fault?nonsense:1")).Status(), 400);
        QVERIFY(!service.RequestLines().join(u'\n').contains("/dev/"_L1));
    }

    void stopsWhileRequestsHang() {
        ServiceFixture service;
        service->SetFault(HttpFault::Hang);
        QTcpSocket hanging;
        hanging.connectToHost(u"127.0.0.1"_s, service->Port());
        QVERIFY(hanging.waitForConnected());
        hanging.write(Request("GET", "/settings/A"));
        hanging.flush();
        QTRY_COMPARE(service->Requests().size(), size_t(1));
        const quint16 port = service->Port();
        service->Stop();
        QCOMPARE(Send(port, Request("GET", "/")).end, QAbstractSocket::ConnectionRefusedError);
        service->ClearFaults();
        service->Start();
        QCOMPARE(service->Port(), port);
        QCOMPARE(Send(port, Request("GET", "/")).Status(), 404);
    }

    void namesAPortThatIsTaken() {
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost));
        QTemporaryDir home;
        Options options;
        options.home = home.path().toStdU16String();
        options.port = other.serverPort();
        DevService service(options);
        try {
            service.Start();
            QFAIL("started on a port that another holds");
        } catch (const std::runtime_error& error) {
            QVERIFY2(QByteArray(error.what()).contains(QByteArray::number(other.serverPort())), error.what());
        }
    }
};

BTASK_TEST(RequestsTest);
#include "RequestsTest.moc"
