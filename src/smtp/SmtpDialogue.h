#pragma once

#include "platform/TcpConnection.h"

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

/// How long the steps of a delivery may take.
struct MailPatience {
    platform::TcpConnection::Patience connect = {};
    std::chrono::milliseconds reply{60'000}; ///< a command and the whole reply to it
};

/// What is handed to a mail server.
struct MailEnvelope {
    QByteArray hostName; ///< this computer's
    QByteArray sender;   ///< an address
    std::vector<QByteArray> recipients;
    QByteArray message; ///< as MailMessage has it
};

/// How a step of the dialogue ended: by a reply, or by what kept one from coming.
struct SmtpStep {
    enum class End { Accepted, OtherCode, TooLong, TimedOut, Closed, Stopped };

    End end = End::Stopped;
    QByteArray name;  ///< as in "RCPT TO"
    std::string text; ///< of the server's last reply, or what has come of it

    bool HasCode(const char* code) const { return text.rfind(code, 0) == 0; }
};

/// The dialogue with a mail server on a connection that stands.
class SmtpDialogue {
public:
    /// `tell` is called with the name of each step before it.
    SmtpDialogue(const platform::TcpConnection& connection, MailPatience patience, std::stop_token stop,
                 std::function<void(const QByteArray& step)> tell);

    /// Waits for the server's greeting.
    SmtpStep Greet();
    /// Delivers after the greeting. Returns the last step, or the one that failed; the dialogue is reset
    /// then.
    SmtpStep Deliver(const MailEnvelope& envelope);

private:
    SmtpStep Say(const QByteArray& name, const QByteArray& octets, const char* expected);
    SmtpStep Hear(const QByteArray& name, const char* expected, platform::Deadline until);
    platform::Deadline Until() const;
    void Reset();

    const platform::TcpConnection& m_connection;
    MailPatience m_patience;
    std::stop_token m_stop;
    std::function<void(const QByteArray& step)> m_tell;
    std::string m_received; ///< and in no reply yet
    std::string m_last;     ///< reply
};
