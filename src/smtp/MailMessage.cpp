#include "smtp/MailMessage.h"

#include <QLocale>

#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int NormalPriority = 3;

/// As in "Sat, 7 Nov 2026 09:05:00 -0330".
QByteArray DateText(const QDateTime& time) {
    const int minutes = time.offsetFromUtc() / 60;
    const QByteArray day = QLocale::c().toString(time, u"ddd, d MMM yyyy HH:mm:ss"_s).toLatin1();
    return QByteArray::fromStdString(QString::asprintf("%s %c%02d%02d", day.constData(),
                                                       minutes < 0 ? '-' : '+', std::abs(minutes) / 60,
                                                       std::abs(minutes) % 60)
                                         .toStdString());
}

} // namespace

QByteArray MailMessage::Text() const {
    const QByteArray boundary =
        QString::asprintf("------=_Next_Part_%.10u.%.3u", tick, tick % 1000).toLatin1();
    return "Date: " + DateText(time) + "\r\nFrom: " + senderName + " <" + sender + ">\r\nTo: <" + recipient +
           ">\r\nSubject: " + subject + "\r\nX-Priority: " + QByteArray::number(NormalPriority) +
           "\r\nMIME-Version: 1.0\r\nContent-Type: multipart/mixed;\r\n\tboundary=\"" + boundary +
           "\"\r\n\r\n\r\n--" + boundary +
           "\r\nContent-Type: text/plain;\r\n\tcharset=\"iso-8859-1\"\r\nContent-Transfer-Encoding: "
           "8bit\r\n\r\n" +
           body + "\r\n\r\n--" + boundary + "--\r\n";
}

QByteArray DotStuffed(const QByteArray& text) {
    QByteArray stuffed = text.startsWith('.') ? '.' + text : text;
    return stuffed.replace("\n.", "\n..");
}
