#pragma once

#include "service/ServiceClient.h"

#include <QStringList>

#include <vector>

/// What an application has for backups, as the service lists it.
struct Writer {
    QString name;
    QString id; ///< a GUID in braces
    QStringList components;

    bool operator==(const Writer&) const = default;
};

/// The writers of a list, in its order. Left out are those that no backup takes, known by their identifiers,
/// and lines without name, identifier and a third part.
std::vector<Writer> ParseWriters(const QByteArray& list);

/// As in "SQL Server", or the name itself.
QString WriterDisplayName(const QString& name);

// What a record calls them by.

QString WriterKey(const Writer& writer);
QString ComponentKey(const QString& writerKey, const QString& component);

/// The writers of this machine, or why they are not known, in a sentence.
struct WriterReading {
    std::vector<Writer> writers = {};
    QString failure = {};
    ServiceAnswer answer = {};
};

/// Asks the service, which may take two minutes.
WriterReading ReadWriters(const ServiceClient& service, std::stop_token stop = {});
