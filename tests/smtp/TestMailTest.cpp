// Labels: threads
#include "smtp/TestMail.h"
#include "NameAnswers.h"
#include "Socket.h"
#include "devservice/MailServer.h"
#include "platform/HostName.h"
#include "smtp/MailAddress.h"
#include "smtp/MailMessage.h"
#include "smtp/SmtpReply.h"
#include "support/TestMain.h"
#include "zep/Mui.h"

#include <QElapsedTimer>
#include <QTemporaryFile>

#include <thread>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using devservice::MailServer;
using End = TestMailResult::End;

namespace {

/// Short, where a server that falls silent is waited for.
MailRoute Impatient() {
    MailRoute route;
    route.patience.reply = 200ms;
    return route;
}

QString CommandsOf(const MailServer& server) {
    QStringList commands;
    for (const std::string& line : server.Commands())
        commands += QString::fromStdString(line);
    return commands.join(u'|');
}

/// Puts hosts in the place of a look-up's answer.
class Hosts {
public:
    explicit Hosts(const QString& hosts) { qputenv("BREN_MAIL_HOSTS", hosts.toUtf8()); }
    explicit Hosts(const MailServer& server) : Hosts(u"127.0.0.1:%1"_s.arg(server.Port())) {}
    Hosts(const Hosts&) = delete;
    Hosts& operator=(const Hosts&) = delete;
    ~Hosts() { qunsetenv("BREN_MAIL_HOSTS"); }
};

struct Sent {
    TestMailResult result;
    QStringList steps;
};

Sent Send(const QString& address, const MailRoute& route = {}) {
    Sent sent;
    sent.result = SendTestMail(
        address, [&sent](const QString& step) { sent.steps += step; }, {}, route);
    return sent;
}

/// A name server that answers one question, unless nobody asks.
class OneAnswer {
public:
    OneAnswer(int code, const std::vector<names::Record>& records) {
        m_thread = std::jthread([this, code, records] {
            m_socket.AnswerDatagram([&](const std::string& question) {
                return question == "end" ? std::string() : names::Answer(question, code, records);
            });
        });
    }
    OneAnswer(const OneAnswer&) = delete;
    OneAnswer& operator=(const OneAnswer&) = delete;

    MailRoute Route(quint16 port) const {
        MailRoute route = Impatient();
        route.nameServer = platform::NameServer{"127.0.0.1", m_socket.Port()};
        route.port = port;
        return route;
    }

private:
    const Socket m_socket = Socket::Datagrams();
    std::jthread m_thread;
};

} // namespace

class TestMailTest : public QObject {
    Q_OBJECT

private slots:
    void addressesAreChecked_data() {
        const Columns<QString, QString, QString> row("address", "refusal", "domain");
        const QString notValid = u"Not a valid email address."_s;
        row("", "You need to enter an email address", "");
        row("mara", notValid, "");
        row("mara@example.org", "", "example.org");
        row("a@b@c", "", "b@c");
        row("x@", "", "");
        for (const char* bad :
             {"a b@c", "a@c\r\nRCPT TO:<d@e>", "a@c\n", "<a@c>", "a>@c", "a\t@c", "a@c\x01"})
            row(bad, notValid, MailDomain(QString::fromUtf8(bad)));
    }

    void addressesAreChecked() {
        const auto [address, refusal, domain] = Fetched<QString, QString, QString>();
        QCOMPARE(AddressRefusal(address), refusal);
        QCOMPARE(MailDomain(address), domain);
        if (!refusal.isEmpty())
            QCOMPARE(Send(address).result.Words(), refusal);
    }

    void theMessageIsRightToTheOctet() {
        MailMessage message{"Brenvia Task Notification",
                            "sender@brenvia.example",
                            "mara@example.org",
                            "Brenvia Email Test",
                            "'Caf\xE9.",
                            QDateTime(QDate(2026, 3, 7), QTime(9, 5, 0), Qt::OffsetFromUTC, -12600),
                            4'000'000'007U};
        QCOMPARE(message.Text(), QByteArray("Date: Sat, 7 Mar 2026 09:05:00 -0330\r\n"
                                            "From: Brenvia Task Notification <sender@brenvia.example>\r\n"
                                            "To: <mara@example.org>\r\n"
                                            "Subject: Brenvia Email Test\r\n"
                                            "X-Priority: 3\r\n"
                                            "MIME-Version: 1.0\r\n"
                                            "Content-Type: multipart/mixed;\r\n"
                                            "\tboundary=\"------=_Next_Part_4000000007.007\"\r\n"
                                            "\r\n\r\n--------=_Next_Part_4000000007.007\r\n"
                                            "Content-Type: text/plain;\r\n"
                                            "\tcharset=\"iso-8859-1\"\r\n"
                                            "Content-Transfer-Encoding: 8bit\r\n\r\n"
                                            "'Caf\xE9."
                                            "\r\n\r\n--------=_Next_Part_4000000007.007--\r\n"));
        message.time = QDateTime(QDate(2026, 12, 31), QTime(23, 59, 58), Qt::OffsetFromUTC, 20700);
        message.tick = 42;
        QVERIFY(message.Text().startsWith("Date: Thu, 31 Dec 2026 23:59:58 +0545\r\n"));
        QVERIFY(message.Text().contains("------=_Next_Part_0000000042.042\""));
        QCOMPARE(DotStuffed(".a\r\n.\r\n..b\r\nc."), QByteArray("..a\r\n..\r\n...b\r\nc."));
    }

    void repliesAreReadToTheirEnd_data() {
        const Columns<QString, QString, QString> row("received", "reply", "left");
        row("250 OK\r\n", "250 OK\r\n", "");
        row("250 OK\r", "none", "250 OK\r");
        row("250-a\r\n250-b\r\n", "none", "250-a\r\n250-b\r\n");
        row("250-a\r\n250 b\r\n354 c\r\n", "250-a\r\n250 b\r\n", "354 c\r\n");
        row("250\n", "250\n", "");
        row("\r\n", "\r\n", "");
        row("25-\n3", "25-\n", "3");
    }

    void repliesAreReadToTheirEnd() {
        const auto [received, reply, left] = Fetched<QString, QString, QString>();
        std::string octets = received.toStdString();
        QCOMPARE(QString::fromStdString(TakeReply(octets).value_or("none")), reply);
        QCOMPARE(QString::fromStdString(octets), left);
    }

    void hostsAreNamed_data() {
        const Columns<QString, QString> row("text", "hosts");
        row("127.0.0.1:2525", "127.0.0.1 2525");
        row("a:1, [::1]:2 ,b:65535", "a 1|::1 2|b 65535");
        for (const char* bad : {"a", "a:", ":25", "a:0", "a:65536", "a:1,", "a:b", ","})
            row(bad, "none");
    }

    void hostsAreNamed() {
        const auto [text, hosts] = Fetched<QString, QString>();
        QStringList named;
        const auto parsed = ParseMailHosts(text);
        for (const MailHost& host : parsed.value_or(std::vector<MailHost>()))
            named += u"%1 %2"_s.arg(host.name).arg(host.port);
        QCOMPARE(parsed ? named.join(u'|') : u"none"_s, hosts);
    }

    void eachStepMayFail_data() {
        const Columns<QByteArray, QByteArray, bool, End, QString, QString> row("step", "answer", "closes",
                                                                               "end", "words", "last");
        constexpr bool goesOn = false;
        constexpr bool closes = true;
        const QString sent =
            u"Test Email sent, please check your email account.\naccepted by 127.0.0.1 (%1)"_s;
        const QString failed = u"Failed to send email.\n\n\n"_s;
        const QString host = u"127.0.0.1, step "_s;
        const QByteArray huge(20'000'000, 'x'); // more than fits between client and server
        using enum TestMailResult::End;
        row("nothing fails", "HELO", "250 OK\r\n", goesOn, Sent, sent.arg(u"250 OK, kept"_s), "DATA");
        row("lines", "HELO", "250-a\r\n250-b\r\n250 c\r\n", goesOn, Sent, sent.arg(u"250 OK, kept"_s),
            "DATA");
        row("a name that is none", "HELO", "501 what\r\n", goesOn, NotSent,
            failed + u"501 what\n127.0.0.1 does not accept this computer's name, \"%1\"."_s.arg(
                         QString::fromStdString(platform::HostName())),
            "RSET");
        row("a short name", "HELO", "504 full\r\n", goesOn, NotSent, "this computer's name", "RSET");
        row("no sender", "MAIL", "451 later\r\n", goesOn, NotSent,
            failed + u"451 later\n"_s + host + u"MAIL FROM: it was refused (451 later)."_s, "RSET");
        row("no recipient", "RCPT", "550-no\r\n550 such user\r\n", goesOn, NotSent,
            failed + u"550-no\n550 such user\n"_s + host +
                u"RCPT TO: it was refused (550-no\n550 such user)."_s,
            "RSET");
        row("a good code that is another", "RCPT", "251 elsewhere\r\n", goesOn, NotSent,
            failed + u"251 elsewhere"_s, "RSET");
        row("no data", "DATA", "250 OK\r\n", goesOn, NotSent, failed + u"250 OK\n"_s + host + u"DATA"_s,
            "RSET");
        row("not taken", ".", "554 spam\r\n", goesOn, NotSent, failed + u"554 spam\n"_s + host + u"message"_s,
            "RSET");
        row("silent", "MAIL", "", goesOn, NotSent,
            failed + u"250 OK\n"_s + host + u"MAIL FROM: no whole reply came in time."_s, "RSET");
        row("cut and silent", "MAIL", "250-a\r\n250", goesOn, NotSent, failed + u"250-a\n250\n"_s, "RSET");
        row("without end", "HELO", huge, goesOn, NotSent, "the reply has no end.", "HELO");
        row("lines without end", "HELO", QByteArray("250-a\r\n").repeated(3'000'000), goesOn, NotSent,
            "the reply has no end.", "HELO");
        for (const auto& [step, name] : {std::pair("HELO", "HELO"),
                                         {"MAIL", "MAIL FROM"},
                                         {"RCPT", "RCPT TO"},
                                         {"DATA", "DATA"},
                                         {".", "message"}})
            row(qPrintable(u"closed after %1"_s.arg(QLatin1String(step))), step, "", closes, NotSent,
                host + QLatin1String(name) + u": the connection was closed."_s,
                std::string_view(step) == "." ? "DATA" : step);
        const QString noServer = u"Failed to contact your mail server\n"_s + host + u"greeting: "_s;
        row("an unfriendly greeting", "greeting", "554 go away\r\n", goesOn, NotContacted,
            noServer + u"it was refused (554 go away)."_s, "");
        row("no greeting", "greeting", "", goesOn, NotContacted, noServer + u"no whole reply came in time."_s,
            "");
        row("a closed greeting", "greeting", "22", closes, NotContacted,
            noServer + u"the connection was closed."_s, "");
        row("a greeting without end", "greeting", huge, goesOn, NotContacted,
            noServer + u"the reply has no end."_s, "");
    }

    void eachStepMayFail() {
        const auto [step, answer, closes, end, words, last] =
            Fetched<QByteArray, QByteArray, bool, End, QString, QString>();
        MailServer server;
        const Hosts hosts(server);
        server.SetAnswer(step.toStdString(), answer.toStdString(),
                         closes ? MailServer::After::Close : MailServer::After::GoOn);
        // Only what is awaited in vain may be given up early: a slow computer is given its time.
        const bool inVain = words.contains("in time"_L1);
        const TestMailResult result = Send(u"mara@example.org"_s, inVain ? Impatient() : MailRoute()).result;
        QCOMPARE(result.end, end);
        QVERIFY2(result.Words().contains(words), qPrintable(result.Words()));
        const QStringList whole{u"HELO "_s + QString::fromStdString(platform::HostName()),
                                u"MAIL FROM:<notification@brenvia.example>"_s,
                                u"RCPT TO:<mara@example.org>"_s, u"DATA"_s};
        QStringList expected;
        for (const QString& line : whole) {
            if (last.isEmpty())
                break;
            expected += line;
            if (line.startsWith(last) || (last == "RSET"_L1 && line.startsWith(QLatin1String(step))))
                break;
        }
        if (last == "RSET"_L1)
            expected += last;
        QTRY_COMPARE(CommandsOf(server), expected.join(u'|'));
        QCOMPARE(int(server.Mails().size()), int(end == End::Sent || step == "."));
    }

    void exchangersAreTriedInTheirOrder() {
        MailServer unfriendly;
        unfriendly.SetAnswer("greeting", "554 go away\r\n");
        MailServer first;
        MailServer second;
        const quint16 closed = Socket::Listening().Port();
        const Hosts hosts(u"no..host:25,127.0.0.1:%1,127.0.0.1:%2,localhost:%3,127.0.0.1:%4"_s.arg(closed)
                              .arg(unfriendly.Port())
                              .arg(first.Port())
                              .arg(second.Port()));
        const Sent sent = Send(u"mara@example.org"_s);
        QCOMPARE(sent.result.end, End::Sent);
        QCOMPARE(
            sent.steps.join(u'|'),
            u"Talking to no..host...|Talking to 127.0.0.1...|Talking to 127.0.0.1...|Talking to 127.0.0.1: "
            "greeting|Talking to localhost...|Talking to localhost: greeting|Talking to localhost: HELO|"
            "Talking to localhost: MAIL FROM|Talking to localhost: RCPT TO|Talking to localhost: DATA|"
            "Talking to localhost: message"_s);
        QCOMPARE(CommandsOf(second), QString());
        const std::string mail = first.Mails().at(0);
        QVERIFY(mail.find("To: <mara@example.org>\r\n") != std::string::npos);
        QVERIFY(mail.find("\r\n\r\n'Email notification is setup correctly.\r\n\r\n--") != std::string::npos);
    }

    void nobodyAnswers_data() {
        const Columns<QString, QString> row("hosts", "details");
        row("127.0.0.1:%1", "No exchanger answered on port %1. Many providers block it.");
        row("no..host:25", "no..host has no address.");
        row("nonsense", "BREN_MAIL_HOSTS does not name hosts and ports, as in \"127.0.0.1:2525\".");
    }

    void nobodyAnswers() {
        const auto [given, details] = Fetched<QString, QString>();
        const quint16 closed = Socket::Listening().Port();
        const auto at = [closed](const QString& text) {
            return text.contains(u'%') ? text.arg(closed) : text;
        };
        const Hosts hosts(at(given));
        QCOMPARE(Send(u"a@b"_s).result.Words(), u"Failed to contact your mail server\n"_s + at(details));
    }

    void aDomainIsLookedUp() {
        const MailServer server;
        const names::Record here{names::Mx, names::Word(9) + names::Name("127.0.0.1")};
        const auto lookUp = [&server](const QString& address, int code,
                                      const std::vector<names::Record>& records) {
            return Send(address, OneAnswer(code, records).Route(server.Port()));
        };
        const Sent sent = lookUp(u"mara@example.org"_s, 0, {here});
        QCOMPARE(sent.result.end, End::Sent);
        QCOMPARE(sent.steps.value(0), u"Looking up the mail exchangers of example.org"_s);
        const QString none =
            u"Failed to contact your mail server\nNo mail exchangers of \"%1\" were found."_s;
        QCOMPARE(lookUp(u"a@b@c"_s, 3, {}).result.Words(), none.arg(u"b@c"_s));
        QCOMPARE(
            lookUp(u"a@null.example"_s, 0, {{names::Mx, names::Word(0) + names::Name("")}}).result.Words(),
            none.arg(u"null.example"_s));
        QCOMPARE(Send(u"x@"_s).result.Words(),
                 u"Failed to contact your mail server\nNo domain stands behind the \"@\"."_s);
        QCOMPARE(int(server.Mails().size()), 1);
    }

    void aCancelledTestEndsAtOnce_data() {
        const Columns<QString, QString> row("step", "silent");
        row("Talking to 127.0.0.1: greeting", "greeting");
        row("Talking to 127.0.0.1: HELO", "HELO");
        row("Talking to 127.0.0.1: message", ".");
        row("Looking up the mail exchangers of example.org", "nobody");
    }

    void aCancelledTestEndsAtOnce() {
        const auto [step, silent] = Fetched<QString, QString>();
        MailServer server;
        server.SetAnswer(silent.toStdString(), "");
        const Socket silentNames = Socket::Datagrams();
        MailRoute route;
        route.nameServer = platform::NameServer{"127.0.0.1", silentNames.Port()};
        std::optional<Hosts> hosts;
        if (silent != "nobody"_L1)
            hosts.emplace(server);
        std::stop_source stop;
        std::jthread cancel;
        const TestMailResult result = SendTestMail(
            u"mara@example.org"_s,
            [&, wanted = step](const QString& told) {
                if (told == wanted)
                    cancel = std::jthread([&stop] { stop.request_stop(); });
            },
            stop.get_token(), route);
        QCOMPARE(result.end, End::Cancelled);
        QVERIFY(!CommandsOf(server).contains(u"RSET"_s));
    }

    void theSenderStandsInTheBrandingFile() {
        MailServer server;
        const Hosts hosts(server);
        QTemporaryFile file;
        const auto brand = [&file](const QByteArray& sender) {
            QVERIFY(file.open());
            file.resize(0);
            file.write("<BrandingTexts><Branding Number=\"9002\">" + sender + "</Branding></BrandingTexts>");
            file.close();
            ZEPMuiInitialize(file.filesystemFileName());
        };
        brand("mail@example.net");
        QCOMPARE(Send(u"a@b"_s).result.end, End::Sent);
        QVERIFY(CommandsOf(server).contains(u"|MAIL FROM:<mail@example.net>|"_s));
        QVERIFY(server.Mails().at(0).find("From: Brenvia Task Notification <mail@example.net>\r\n") !=
                std::string::npos);
        brand("nobody");
        QCOMPARE(Send(u"a@b"_s).result.end, End::NotBuilt);
        QCOMPARE(int(server.Mails().size()), 1);
        ZEPMuiInitialize({});
    }
};

BTASK_TEST(TestMailTest);
#include "TestMailTest.moc"
