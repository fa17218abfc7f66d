#include "smtp/SmtpDialogue.h"

#include "smtp/MailMessage.h"
#include "smtp/SmtpReply.h"

#include <algorithm>

using namespace std::chrono_literals;
using platform::TcpOutcome;

namespace {

/// Nobody needs the reply to a reset, so a server that has fallen silent is not waited for once more.
constexpr std::chrono::milliseconds ResetPatience = 5s;

SmtpStep::End EndOf(TcpOutcome outcome) {
    switch (outcome) {
    case TcpOutcome::TimedOut:
        return SmtpStep::End::TimedOut;
    case TcpOutcome::Stopped:
        return SmtpStep::End::Stopped;
    case TcpOutcome::Done:
    case TcpOutcome::NoSuchHost:
    case TcpOutcome::Broken:
        break;
    }
    return SmtpStep::End::Closed;
}

} // namespace

SmtpDialogue::SmtpDialogue(const platform::TcpConnection& connection, MailPatience patience,
                           std::stop_token stop, std::function<void(const QByteArray&)> tell)
    : m_connection(connection), m_patience(patience), m_stop(std::move(stop)), m_tell(std::move(tell)) {}

platform::Deadline SmtpDialogue::Until() const {
    return std::chrono::steady_clock::now() + m_patience.reply;
}

SmtpStep SmtpDialogue::Greet() {
    const QByteArray name = "greeting";
    m_tell(name);
    return Hear(name, "220", Until());
}

SmtpStep SmtpDialogue::Deliver(const MailEnvelope& envelope) {
    struct Command {
        QByteArray name;
        QByteArray octets;
        const char* expected;
    };
    std::vector<Command> commands{
        {"HELO", "HELO " + envelope.hostName + "\r\n", "250"},
        {"MAIL FROM", "MAIL FROM:<" + envelope.sender + ">\r\n", "250"},
    };
    for (const QByteArray& recipient : envelope.recipients)
        commands.push_back({"RCPT TO", "RCPT TO:<" + recipient + ">\r\n", "250"});
    commands.push_back({"DATA", "DATA\r\n", "354"});
    commands.push_back({"message", DotStuffed(envelope.message) + "\r\n.\r\n", "250"});
    SmtpStep step;
    for (const Command& command : commands) {
        step = Say(command.name, command.octets, command.expected);
        if (step.end != SmtpStep::End::Accepted)
            break;
    }
    using enum SmtpStep::End;
    if (step.end != Accepted && step.end != Stopped && step.end != Closed)
        Reset();
    return step;
}

SmtpStep SmtpDialogue::Say(const QByteArray& name, const QByteArray& octets, const char* expected) {
    m_tell(name);
    const platform::Deadline until = Until();
    const std::string_view sent(octets.data(), std::size_t(octets.size()));
    const TcpOutcome outcome = m_connection.Send(sent, until, m_stop);
    // A server that has closed may have said why before.
    if (outcome != TcpOutcome::Done && outcome != TcpOutcome::Broken)
        return {EndOf(outcome), name, m_last};
    return Hear(name, expected, until);
}

SmtpStep SmtpDialogue::Hear(const QByteArray& name, const char* expected, platform::Deadline until) {
    std::optional<std::string> reply;
    while (!(reply = TakeReply(m_received))) {
        if (m_received.size() > LongestReply)
            return {SmtpStep::End::TooLong, name, m_received};
        const TcpOutcome outcome = m_connection.Receive(m_received, until, m_stop);
        if (outcome != TcpOutcome::Done)
            return {EndOf(outcome), name, m_received.empty() ? m_last : m_received};
    }
    m_last = *reply;
    SmtpStep step{SmtpStep::End::Accepted, name, std::move(*reply)};
    if (!step.HasCode(expected))
        step.end = SmtpStep::End::OtherCode;
    return step;
}

void SmtpDialogue::Reset() {
    m_patience.reply = std::min(m_patience.reply, ResetPatience);
    m_received.clear();
    Say("RSET", "RSET\r\n", "250");
}
