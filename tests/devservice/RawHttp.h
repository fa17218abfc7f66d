#pragma once

#include <QByteArray>
#include <QTcpSocket>

/// How a raw exchange ended: what came, and by which end.
struct Exchange {
    QByteArray octets;
    QAbstractSocket::SocketError end = QAbstractSocket::UnknownSocketError;

    int Status() const { return octets.startsWith("HTTP/1.1 ") ? octets.mid(9, 3).toInt() : 0; }
    QByteArray Body() const { return octets.mid(octets.indexOf("\r\n\r\n") + 4); }
};

inline Exchange Send(quint16 port, const QByteArray& octets, int milliseconds = 5000) {
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    Exchange result;
    if (socket.waitForConnected(milliseconds)) {
        socket.write(octets);
        while (socket.waitForReadyRead(milliseconds))
            result.octets += socket.readAll();
        result.octets += socket.readAll();
    }
    result.end = socket.error();
    return result;
}

inline QByteArray Request(const QByteArray& verb, const QByteArray& target, const QByteArray& body = {}) {
    return verb + ' ' + target +
           " HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" +
           body;
}
