// Labels: threads
#include "service/ServiceClient.h"

#include "service/DavListing.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "zep/SysInfo.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <future>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using devservice::HttpFault;

namespace {

/// What a call puts on the wire, taken by a listener that answers "200" to whatever comes.
struct Wire {
    QByteArray line;
    QByteArrayList headers; ///< sorted
    QByteArray body;
};

Wire TakeApart(const QByteArray& octets) {
    const qsizetype end = octets.indexOf("\r\n\r\n");
    QByteArrayList head = octets.left(end).replace("\r\n", "\n").split('\n');
    Wire wire{head.takeFirst(), head, octets.mid(end + 4)};
    std::sort(wire.headers.begin(), wire.headers.end());
    return wire;
}

Wire OnTheWire(const std::function<void(const ServiceClient&)>& call) {
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    qputenv("BREN_SERVICE_PORT", QByteArray::number(server.serverPort()));
    auto called = std::async(std::launch::async, [&call] { call(ServiceClient()); });
    QByteArray octets;
    if (server.waitForNewConnection(10'000)) {
        const std::unique_ptr<QTcpSocket> socket(server.nextPendingConnection());
        const auto isWhole = [&octets] {
            const qsizetype end = octets.indexOf("\r\n\r\n");
            const qsizetype length = octets.indexOf("Content-Length: ");
            return end >= 0 && octets.size() - end - 4 >=
                                   (length < 0 ? 0 : octets.mid(length + 16, 8).split('\r').first().toInt());
        };
        while (!isWhole() && socket->waitForReadyRead(10'000))
            octets += socket->readAll();
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
        socket->waitForBytesWritten();
        called.wait(); // before the socket goes: what the client sends beyond is read below
        octets += socket->readAll();
    }
    called.get();
    qunsetenv("BREN_SERVICE_PORT");
    return TakeApart(octets);
}

devservice::Answer AnswerOf(const QByteArray& body, int status = 200) {
    return {status, body.toStdString()};
}

} // namespace

using Call = std::function<void(const ServiceClient&)>;

class ServiceClientTest : public QObject {
    Q_OBJECT

private slots:
    void sendsTheseOctets_data() {
        // Without a length the request has no such header.
        const Columns<QByteArray, QByteArray, QByteArray, Call> row("line", "length", "body", "call");
        const QByteArray none;
        row("get", "GET /settings/A%20b%C3%A4", none, none,
            [](auto& client) { client.GetSetting(u"A bä"_s); });
        row("put, integer", "PUT /settings/N?ValueType=1&Value=-5", "0", none,
            [](auto& client) { client.SetIntSetting(u"N"_s, -5); });
        row("put, true", "PUT /settings/N?ValueType=4&Value=True", "0", none,
            [](auto& client) { client.SetBoolSetting(u"N"_s, true); });
        row("put, false", "PUT /settings/N?ValueType=4&Value=False", "0", none,
            [](auto& client) { client.SetBoolSetting(u"N"_s, false); });
        row("put, text as it stands", "PUT /settings/N?ValueType=2&Value=a&b=%41%23%0Ad%09%E2%82%AC+~'", "0",
            none, [](auto& client) { client.SetStringSetting(u"N"_s, u"a&b=%41#\nd\t€+~'"_s); });
        row("start", "GET /schedule/startnow?%7B0A-1%7D", none, none,
            [](auto& client) { client.StartTaskNow(u"{0A-1}"_s); });
        row("resume", "GET /schedule/resumetask?a", none, none,
            [](auto& client) { client.ResumeTask(u"a"_s); });
        row("pause", "GET /schedule/pausetask?a", none, none, [](auto& client) { client.PauseTask(u"a"_s); });
        row("delete", "GET /schedule/deletetask?a", none, none,
            [](auto& client) { client.DeleteTask(u"a"_s); });
        row("delete sub-task", "GET /schedule/delsub?%7B0A-1%7D:17", none, none,
            [](auto& client) { client.DeleteSubTask(u"{0A-1}"_s, 17); });
        row("directories", "GET /profile/%d?PMCMethod=GetVdirList", none, none,
            [](auto& client) { client.GetVdirList(); });
        row("profile", "GET /profile/?PMCMethod=M", "4", u"äb\0"_s.toUtf8(),
            [](auto& client) { client.CallProfileMethod(u"M"_s, u"äb"_s); });
        row("new card", "GET /mysafe/?PMCMethod=addnewcard", "5", QByteArray("<c/>\0", 5),
            [](auto& client) { client.AddNewCard(u"<c/>"_s); });
        row("status", "GET /profile/?PMCMethod=GetVDirStatus", "4", QByteArray("abc\0", 4),
            [](auto& client) { client.GetVDirStatus("abc"); });
        row("list a folder", "PROPFIND /resources/h/%C3%A4%20b", none, none,
            [](auto& client) { RequestDavListing(client, u"/h/ä b"_s); });
        row("new folder", "MKCOL /resources/h/new%20folder", none, none,
            [](auto& client) { CreateDavFolder(client, u"/h"_s, u"new folder"_s); });
        row("delete a folder", "DELETE /resources/h/a", none, none, [](auto& client) {
            DeleteDavPath(client, u"/h"_s); // a whole account: nothing is sent
            DeleteDavPath(client, u"/h/a"_s);
        });
        row("empty body", "PROPFIND /resources/x", "1", QByteArray("\0", 1),
            [](auto& client) { client.SendRequest(u"/resources/x"_s, u"PROPFIND"_s, 207, ""); });
        row("other verb", "MOVE /resources/a/../b?Destination=/resources/c", none, none, [](auto& client) {
            client.SendRequest(u"/resources/a/../b?Destination=/resources/c"_s, u"MOVE"_s, 200);
        });
    }

    void sendsTheseOctets() {
        const auto [line, length, body, call] = Fetched<QByteArray, QByteArray, QByteArray, Call>();
        const Wire wire = OnTheWire(call);
        QByteArrayList headers{"Cache-Control: no-cache", "Depth: 1", "Pragma: no-cache",
                               "User-Agent: NextZEP Shell Extension"};
        if (!length.isNull())
            headers.insert(1, "Content-Length: " + length);
        QCOMPARE(wire.line, line + " HTTP/1.1");
        QByteArrayList sent = wire.headers;
        QCOMPARE(sent.removeIf([](const QByteArray& header) { return header.startsWith("Host: 127.0.0.1"); }),
                 1);
        sent.removeAll("Connection: Keep-Alive"); // the one thing that Windows adds
        QCOMPARE(sent, headers);
        QCOMPARE(wire.body, body);
    }

    void portFollowsModeAndEnvironment_data() {
        const Columns<QByteArray, bool, int> row("variable", "server", "port");
        row("desktop", {}, false, 9678);
        row("server", {}, true, 9898);
        row("given", "4711", true, 4711);
        row("the last", "65535", false, 65535);
        for (const char* unusable : {"0", "65536", "http", "-1", "+80", " 80", "80 ", "0x50", "80.0"})
            row(unusable, QByteArray(unusable), false, 0);
        if (QSysInfo::productType() != "windows"_L1) // where an empty variable is none
            row("set to nothing", QByteArray(""), false, 0);
    }

    void portFollowsModeAndEnvironment() {
        const auto [variable, server] = Fetched<QByteArray, bool>();
        if (!variable.isNull())
            qputenv("BREN_SERVICE_PORT", variable);
        ZEPSysInfoSetServerMode(server);
        QTEST(int(ServicePort()), "port");
        const bool refused = ServicePort() == 0;
        QCOMPARE(
            ServicePortMistake().contains(u"\"%1\", which is no port"_s.arg(QString::fromUtf8(variable))),
            refused);
        if (refused)
            QCOMPARE(ServiceClient().GetSetting(u"A"_s).outcome, ServiceOutcome::Unreachable);
        ZEPSysInfoSetServerMode(false);
        qunsetenv("BREN_SERVICE_PORT");
    }

    void waitsLongForWritersOnly() {
        const platform::HttpTimeouts usual;
        const platform::HttpTimeouts writers = TimeoutsOf(u"/backupsvr/writers"_s);
        QCOMPARE(writers.resolve, 120s);
        QCOMPARE(writers.connect, 160s);
        QCOMPARE(writers.send, 160s);
        QCOMPARE(writers.receive, 130s);
        for (const auto& path : {u"/backupsvr/writers?a"_s, u"/backupsvr/writers/"_s, u"/BackupSvr/Writers"_s,
                                 u"/settings/A"_s, QString()})
            QCOMPARE(TimeoutsOf(path).receive, usual.receive);
    }

    void settingsKeepTheirRules_data() {
        const Columns<QByteArray, QString, int, bool> row("stored", "text", "number", "flag");
        row("never set", {}, {}, 42, true);
        row("", "", 0, false);
        row("True", "True", 0, true);
        row("tRUE", "tRUE", 0, true);
        row("true ", "true ", 0, false);
        row("1", "1", 1, false);
        row(" \t-12,5", " \t-12,5", -12, false);
        row("+7x", "+7x", 7, false);
        row("- 7", "- 7", 0, false);
        row("99999999999999999999", "99999999999999999999", 2147483647, false);
        row("-2147483649", "-2147483649", -2147483648, false);
        row("na\xC3\xAFve", "naïve", 0, false);
        row("a\xFF", "a\uFFFD", 0, false);
        row("terminated", QByteArray("true\0x", 6), "true", 0, true);
    }

    void settingsKeepTheirRules() {
        const auto [stored, text] = Fetched<QByteArray, QString>();
        ServiceFixture service;
        if (!stored.isNull())
            service->SetAnswer("/settings/Name", AnswerOf(stored));
        const ServiceClient client;
        QTEST(client.GetIntSetting(u"Name"_s, 42), "number");
        QTEST(client.GetBoolSetting(u"Name"_s, true), "flag");
        const std::optional<QString> read = client.GetStringSetting(u"Name"_s);
        QCOMPARE(read.has_value(), !stored.isNull());
        QCOMPARE(read.value_or(QString()), text);
    }

    void settingsComeBackAsTheyWereSet() {
        ServiceFixture service;
        const ServiceClient client;
        for (const QString& large : {QString(65536, u'x'), QString(21000, u'ä')}) {
            QVERIFY(client.SetStringSetting(u"Large"_s, large));
            QCOMPARE(client.GetStringSetting(u"Large"_s), large);
        }
        QVERIFY(client.SetStringSetting(u"Lines"_s, u"one\ntwo\tthree {x} \"y\""_s));
        QCOMPARE(client.GetStringSetting(u"Lines"_s), u"one\ntwo\tthree {x} \"y\""_s);
        QVERIFY(client.SetIntSetting(u"Number"_s, std::numeric_limits<int>::min()));
        QCOMPARE(client.GetIntSetting(u"Number"_s, 0), std::numeric_limits<int>::min());
        for (const bool flag : {true, false}) {
            QVERIFY(client.SetBoolSetting(u"Flag"_s, flag));
            QCOMPARE(client.GetBoolSetting(u"Flag"_s, !flag), flag);
        }
    }

    void bodiesArriveWhole() {
        ServiceFixture service;
        for (const qsizetype size : {0, 1, 4094, 4095, 4096, 4097, 1 << 20}) {
            QByteArray body(size, 'x');
            if (size > 1)
                body[size / 2] = '\0';
            service->SetAnswer("/body", AnswerOf(body, 207));
            const ServiceAnswer answer = ServiceClient().SendRequest(u"/body"_s, u"PROPFIND"_s, 207);
            QVERIFY(answer);
            QCOMPARE(answer.body, body);
            QCOMPARE(qint64(answer.length.value_or(9)), size);
            const ServiceAnswer unexpected = ServiceClient().SendRequest(u"/body"_s, u"PROPFIND"_s, 200);
            QVERIFY(unexpected.outcome == ServiceOutcome::OtherStatus && unexpected.body.isEmpty());
            QCOMPARE(unexpected.status, 207);
        }
        const QByteArray tooMuch(qsizetype(ServiceClient::MaxAnswer) + 1, 'x');
        service->SetAnswer("/body", AnswerOf(tooMuch));
        for (const size_t bound : {ServiceClient::MaxAnswer, ServiceClient::MaxListing}) {
            const ServiceAnswer answer =
                ServiceClient().SendRequest(u"/body"_s, u"GET"_s, 200, {}, {}, bound);
            QCOMPARE(size_t(answer.body.size()), std::min(bound, ServiceClient::MaxAnswer + 1));
            QCOMPARE(answer.length.has_value(), bound == ServiceClient::MaxListing);
        }
    }

    void tellsFaultsAndRecovers_data() {
        const Columns<QString, ServiceOutcome, int, QByteArray, bool> row("fault", "outcome", "status",
                                                                          "body", "whole");
        using enum ServiceOutcome;
        const QByteArray whole = "12345678";
        row("none", "none", Answered, 200, whole, true);
        row("another target's", "hang@/other", Answered, 200, whole, true);
        row("down", "refuse", Unreachable, 0, {}, false);
        row("slow", "delay:50", Answered, 200, whole, true);
        row("dripping", "drip:5", Answered, 200, whole, true);
        row("cut by FIN", "fin", Answered, 200, whole.left(4), false);
        row("refusal", "status:403", OtherStatus, 403, {}, false);
        row("other status", "status:503", OtherStatus, 503, {}, false);
        row("other success", "status:204", OtherStatus, 204, {}, false);
        row("garbage", "garbage", Unreachable, 0, {}, false);
    }

    void tellsFaultsAndRecovers() {
        const auto [fault, outcome, status, body, whole] =
            Fetched<QString, ServiceOutcome, int, QByteArray, bool>();
        ServiceFixture service;
        service->SetSetting("Eight", "12345678");
        service->SetVirtualDirectories({{"V", "{C}", 2, "{P}"}});
        QVERIFY(service->SetFault(fault.toStdString()));
        const ServiceClient client;
        const ServiceAnswer answer = client.GetSetting(u"Eight"_s);
        QCOMPARE(answer.outcome, outcome);
        QCOMPARE(answer.status, status);
        QCOMPARE(answer.body, body);
        QCOMPARE(answer.length.has_value(), whole);
        const SettingState state = SettingStateOf(answer);
        QCOMPARE(state, whole                           ? SettingState::Set
                        : status >= 400 && status < 500 ? SettingState::NotSet
                                                        : SettingState::NotRead);
        QCOMPARE(client.GetIntSetting(u"Eight"_s, -1), whole ? 12345678 : -1);
        QCOMPARE(client.GetStringSetting(u"Eight"_s).has_value(), whole);
        const bool answered = outcome == ServiceOutcome::Answered;
        QCOMPARE(bool(client.StartTaskNow(u"nobody"_s)), false);
        QCOMPARE(bool(client.SetIntSetting(u"Other"_s, 1)), answered);
        QCOMPARE(client.GetVdirList().has_value(), answered);
        QCOMPARE(client.GetVDirStatus("v"), whole ? 2 : 0);
        service->ClearFaults();
        QCOMPARE(client.GetSetting(u"Eight"_s).body, QByteArray("12345678"));
    }

    void aResetLosesNothingThatWasRead() {
        ServiceFixture service;
        service->SetSetting("Eight", "12345678");
        service->SetFault(HttpFault::CutByRst);
        const ServiceAnswer answer = ServiceClient().GetSetting(u"Eight"_s);
        QVERIFY(!answer.length);
        // The reset may overtake what was sent before it.
        QVERIFY(answer ? QByteArray("1234").startsWith(answer.body)
                       : answer.outcome == ServiceOutcome::Unreachable);
    }

    void aStopFreesACallThatHangs() {
        ServiceFixture service;
        service->SetFault(HttpFault::Hang);
        std::stop_source stop;
        auto answer = std::async(std::launch::async, [token = stop.get_token()] {
            return ServiceClient().GetSetting(u"A"_s, token);
        });
        QTRY_COMPARE(service->Requests().size(), size_t(1));
        QVERIFY(answer.wait_for(0s) == std::future_status::timeout);
        stop.request_stop();
        QVERIFY(answer.wait_for(1s) == std::future_status::ready);
        QCOMPARE(answer.get().outcome, ServiceOutcome::Cancelled);
    }

    void callsOfManyThreadsAreIndependent() {
        ServiceFixture service;
        std::array<std::future<bool>, 12> calls;
        int number = 0;
        for (auto& call : calls)
            call = std::async(std::launch::async, [value = number++] {
                const ServiceClient client;
                const QString name = u"Number"_s + QString::number(value);
                return client.SetIntSetting(name, value) && client.GetIntSetting(name, -1) == value;
            });
        for (auto& call : calls)
            QVERIFY(call.get());
    }

    void readsDirectoryLists_data() {
        // No records: no list.
        const Columns<QByteArray, QString> row("answer", "records");
        const auto list = [&row](const char* name, const QByteArray& vdirs, const QString& records) {
            row(name, "<Response><VDirs>" + vdirs + "</VDirs></Response>", records);
        };
        list("none", "", u""_s);
        list("one", "<VDir Name='A &amp; B' SafeCardId='{C}' Status='3' SPId='{P}'/>", u"A & B|{C}|3|{P}"_s);
        list("in order, of any name", "<V Name='b' SafeCardId='1'/><W Name='a' SafeCardId='2' Status='1'/>",
             u"b|1||;a|2|1|"_s);
        list("without name or card", "<V SafeCardId='1'/><V Name='a'/><V Name='' SafeCardId=''/>", u"|||"_s);
        list("wide", "<V Name='\xE2\x82\xAC' SafeCardId='\xF0\x9F\x93\x81'/>", u"€|📁||"_s);
        row("other path", "<VDirs><V Name='a' SafeCardId='1'/></VDirs>", {});
        row("empty", "", {});
        row("no document", "Not logged in", {});
        row("cut", "<Response><VDirs><V Name='a' Safe", {});
    }

    void readsDirectoryLists() {
        const auto [answer, records] = Fetched<QByteArray, QString>();
        ServiceFixture service;
        service->SetAnswer("/profile/", AnswerOf(answer));
        const auto joined = [](const std::vector<VDirRecord>& list) {
            QStringList texts;
            for (const VDirRecord& each : list)
                texts += QStringList{each.name, each.safeCardId, each.status, each.spId}.join(u'|');
            return texts.join(u';');
        };
        const auto parsed = ParseVdirList(ServiceClient().RequestVdirList().body);
        QCOMPARE(parsed.has_value(), !records.isNull());
        QCOMPARE(joined(parsed.value_or(std::vector<VDirRecord>())), records);
        const auto list = ServiceClient().GetVdirList();
        QVERIFY(list);
        QCOMPARE(joined(*list), records);
    }
};

BTASK_TEST(ServiceClientTest);
#include "ServiceClientTest.moc"
