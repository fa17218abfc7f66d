#pragma once

#include <QByteArray>
#include <QDateTime>

/// A mail of one text, as it is handed to a mail server.
struct MailMessage {
    QByteArray senderName;
    QByteArray sender;    ///< an address
    QByteArray recipient; ///< an address
    QByteArray subject;
    QByteArray body; ///< in iso-8859-1
    QDateTime time;
    quint32 tick = 0; ///< milliseconds, of which the boundary is made

    QByteArray Text() const;
};

/// The text as it goes over the wire, where a line of one dot ends it: a dot that begins a line is doubled.
QByteArray DotStuffed(const QByteArray& text);
