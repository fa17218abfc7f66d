#pragma once

#include "platform/MailExchange.h"
#include "smtp/SmtpDialogue.h"

#include <QString>

#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

struct MailHost {
    QString name; ///< or a numeric address
    quint16 port = 0;

    bool operator==(const MailHost&) const = default;
};

/// The way of a mail to its server, where it is not the usual one.
struct MailRoute {
    std::optional<platform::NameServer> nameServer = {}; ///< in place of the system's
    quint16 port = 25;                                   ///< of the mail exchangers
    MailPatience patience = {};
};

struct TestMailResult {
    enum class End { Sent, Refused, NotContacted, NotSent, NotBuilt, Cancelled };

    End end = End::Cancelled;
    QString text;    ///< the sentence about it
    QString details; ///< more about it, for who has to mend it; may be empty

    QString Words() const; ///< both
};

/// Sends a mail to the address, straight to the first mail exchanger of its domain that greets, and by no
/// other way. Blocks for up to the time-outs of all exchangers; ends within a second of a stop request.
/// `tell` is called with each step before it, as in "Talking to mx2.example.org...".
TestMailResult SendTestMail(const QString& address, const std::function<void(const QString& step)>& tell,
                            const std::stop_token& stop, const MailRoute& route = {});

/// What `BREN_MAIL_HOSTS` puts in the place of a look-up's answer: hosts and ports, as in
/// "127.0.0.1:2525,[::1]:2526". None when it is something else.
std::optional<std::vector<MailHost>> ParseMailHosts(const QString& text);
