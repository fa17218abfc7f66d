#include "smtp/TestMail.h"

#include "platform/CharacterSet.h"
#include "platform/Environment.h"
#include "platform/HostName.h"
#include "smtp/MailAddress.h"
#include "smtp/MailMessage.h"
#include "smtp/SmtpReply.h"
#include "zep/Mui.h"

#include <QCoreApplication>
#include <QUrl>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using platform::TcpOutcome;
using End = TestMailResult::End;

namespace {

struct Mails {
    Q_DECLARE_TR_FUNCTIONS(TestMail)
};

constexpr char SenderName[] = "Brenvia Task Notification";
constexpr char Subject[] = "Brenvia Email Test";
// The apostrophe stands there on purpose.
constexpr char Body[] = "'Email notification is setup correctly.";
constexpr char HostsVariable[] = "BREN_MAIL_HOSTS";

quint32 TickCount() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return quint32(std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

TestMailResult NotContacted(const QString& details) {
    return {End::NotContacted, Mails::tr("Failed to contact your mail server"), details};
}

/// The name of a domain as name servers know it.
std::string WireDomain(const QString& domain) {
    const auto isAscii = [](QChar c) { return c < QChar(128); };
    const bool plain = std::all_of(domain.begin(), domain.end(), isAscii);
    const QByteArray ace = plain ? QByteArray() : QUrl::toAce(domain);
    return (ace.isEmpty() ? domain.toUtf8() : ace).toStdString();
}

/// One sending, from exchanger to exchanger.
class Sending {
public:
    Sending(const QString& address, const std::function<void(const QString&)>& tell, std::stop_token stop,
            const MailRoute& route)
        : m_address(address), m_tell(tell), m_stop(std::move(stop)), m_route(route) {}

    TestMailResult Run();

private:
    TestMailResult ToHosts(const std::vector<MailHost>& hosts);
    /// None when the next host is to be tried.
    std::optional<TestMailResult> ToHost(const MailHost& host);
    std::optional<std::vector<MailHost>> LookUp(const QString& domain);
    QString WhyNot(const MailHost& host, const SmtpStep& step) const;
    QString WhyNoneAnswered(const std::vector<MailHost>& hosts) const;

    const QString m_address;
    const std::function<void(const QString&)>& m_tell;
    const std::stop_token m_stop;
    const MailRoute& m_route;
    MailEnvelope m_envelope;
    QString m_lastFault; ///< of a host that was left for the next, but for one that does not answer at all
};

TestMailResult Sending::Run() {
    if (QString refusal = AddressRefusal(m_address); !refusal.isEmpty())
        return {End::Refused, std::move(refusal), {}};
    const QString sender = ZEPMuiGetBrandingStringW(Branding::MailSender);
    if (!AddressRefusal(sender).isEmpty())
        return {End::NotBuilt,
                Mails::tr("The address that mails are sent from, \"%1\", is not a valid one.").arg(sender),
                Mails::tr("It stands in the branding file.")};
    const auto body = platform::ToLatin1(Body);
    if (!body)
        return {End::NotBuilt, Mails::tr("Failed to get multi-language interface"), {}};
    const MailMessage message{SenderName,
                              sender.toUtf8(),
                              m_address.toUtf8(),
                              Subject,
                              QByteArray::fromStdString(*body),
                              QDateTime::currentDateTime(),
                              TickCount()};
    m_envelope = {
        QByteArray::fromStdString(platform::HostName()), message.sender, {message.recipient}, message.Text()};
    if (const auto given = platform::EnvironmentVariable(HostsVariable)) {
        const auto hosts = ParseMailHosts(QString::fromStdString(*given));
        return hosts ? ToHosts(*hosts)
                     : NotContacted(Mails::tr("%1 does not name hosts and ports, as in \"127.0.0.1:2525\".")
                                        .arg(QLatin1String(HostsVariable)));
    }
    const QString domain = MailDomain(m_address);
    if (domain.isEmpty())
        return NotContacted(Mails::tr("No domain stands behind the \"@\"."));
    const auto hosts = LookUp(domain);
    return hosts ? ToHosts(*hosts)
                 : NotContacted(Mails::tr("No mail exchangers of \"%1\" were found.").arg(domain));
}

std::optional<std::vector<MailHost>> Sending::LookUp(const QString& domain) {
    m_tell(Mails::tr("Looking up the mail exchangers of %1").arg(domain));
    const auto names = platform::FindMailExchangers(WireDomain(domain), m_route.nameServer, m_stop);
    if (!names || names->empty())
        return m_stop.stop_requested() ? std::optional<std::vector<MailHost>>(std::in_place) : std::nullopt;
    std::vector<MailHost> hosts;
    hosts.reserve(names->size());
    for (const std::string& name : *names)
        hosts.push_back({QString::fromStdString(name), m_route.port});
    return hosts;
}

TestMailResult Sending::ToHosts(const std::vector<MailHost>& hosts) {
    for (const MailHost& host : hosts)
        if (const auto result = ToHost(host))
            return *result;
    if (m_stop.stop_requested())
        return {End::Cancelled, Mails::tr("The test was cancelled."), {}};
    return NotContacted(m_lastFault.isEmpty() ? WhyNoneAnswered(hosts) : m_lastFault);
}

std::optional<TestMailResult> Sending::ToHost(const MailHost& host) {
    if (m_stop.stop_requested())
        return {};
    m_tell(Mails::tr("Talking to %1...").arg(host.name));
    platform::TcpConnection connection;
    const TcpOutcome connected =
        connection.Connect(host.name.toStdString(), host.port, m_route.patience.connect, m_stop);
    if (connected == TcpOutcome::NoSuchHost)
        m_lastFault = Mails::tr("%1 has no address.").arg(host.name);
    if (connected != TcpOutcome::Done)
        return {};
    SmtpDialogue dialogue(connection, m_route.patience, m_stop, [this, &host](const QByteArray& step) {
        m_tell(Mails::tr("Talking to %1: %2").arg(host.name, QString::fromLatin1(step)));
    });
    if (const SmtpStep greeting = dialogue.Greet(); greeting.end != SmtpStep::End::Accepted) {
        m_lastFault = WhyNot(host, greeting);
        return {};
    }
    const SmtpStep last = dialogue.Deliver(m_envelope);
    if (last.end == SmtpStep::End::Stopped)
        return {};
    const QString reply = ReplyText(last.text);
    if (last.end == SmtpStep::End::Accepted)
        return TestMailResult{End::Sent, Mails::tr("Test Email sent, please check your email account."),
                              Mails::tr("accepted by %1 (%2)").arg(host.name, reply)};
    return TestMailResult{End::NotSent, Mails::tr("Failed to send email.\n\n\n") + reply, WhyNot(host, last)};
}

QString Sending::WhyNot(const MailHost& host, const SmtpStep& step) const {
    if (step.name == "HELO" && (step.HasCode("501") || step.HasCode("504")))
        return Mails::tr(
                   "%1 does not accept this computer's name, \"%2\". Many mail servers want a full one, "
                   "as in \"pc.example.org\".")
            .arg(host.name, QString::fromUtf8(m_envelope.hostName));
    QString how;
    switch (step.end) {
    case SmtpStep::End::Accepted:
    case SmtpStep::End::Stopped:
        break;
    case SmtpStep::End::OtherCode:
        how = Mails::tr("it was refused (%1).").arg(ReplyText(step.text));
        break;
    case SmtpStep::End::TooLong:
        how = Mails::tr("the reply has no end.");
        break;
    case SmtpStep::End::TimedOut:
        how = Mails::tr("no whole reply came in time.");
        break;
    case SmtpStep::End::Closed:
        how = Mails::tr("the connection was closed.");
        break;
    }
    return Mails::tr("%1, step %2: %3").arg(host.name, QString::fromLatin1(step.name), how);
}

QString Sending::WhyNoneAnswered(const std::vector<MailHost>& hosts) const {
    const quint16 port = hosts.empty() ? m_route.port : hosts.front().port;
    return Mails::tr("No exchanger answered on port %1. Many providers block it.").arg(port);
}

} // namespace

QString TestMailResult::Words() const {
    return details.isEmpty() ? text : text + u'\n' + details;
}

TestMailResult SendTestMail(const QString& address, const std::function<void(const QString& step)>& tell,
                            const std::stop_token& stop, const MailRoute& route) {
    return Sending(address, tell, stop, route).Run();
}

std::optional<std::vector<MailHost>> ParseMailHosts(const QString& text) {
    std::vector<MailHost> hosts;
    for (const QString& entry : text.split(u',')) {
        const qsizetype colon = entry.lastIndexOf(u':');
        bool isPort = false;
        const quint16 port = entry.mid(colon + 1).trimmed().toUShort(&isPort);
        QString name = entry.first(std::max(colon, qsizetype(0))).trimmed();
        if (name.startsWith(u'[') && name.endsWith(u']'))
            name = name.sliced(1, name.size() - 2);
        if (name.isEmpty() || !isPort || port == 0)
            return {};
        hosts.push_back({name, port});
    }
    return hosts;
}
