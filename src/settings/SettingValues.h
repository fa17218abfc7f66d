#pragma once

#include "service/ServiceClient.h"

#include <QByteArray>
#include <QStringList>

#include <stop_token>
#include <vector>

/// A setting as one read found it; the body is that of one that is set.
struct SettingRead {
    SettingState state = SettingState::NotRead;
    QByteArray body;
};

/// What one batch of reads brought, in the order of the names.
struct SettingReads {
    std::vector<SettingRead> settings; ///< as many as names; those after a silence of the service not read
    bool reached = true;               ///< the service was there to the end
};

SettingReads ReadSettings(const ServiceClient& service, const QStringList& names, std::stop_token stop);

/// Writes the text as the type wants it: a number, the text itself, "True" or "False".
ServiceAnswer WriteSetting(const ServiceClient& service, const QString& name, ServiceClient::ValueType type,
                           const QString& text, std::stop_token stop);

/// Whether the service was there to take or refuse the request.
bool IsReached(const ServiceAnswer& answer);

/// The body as text; of a boolean "True" or "False", of an integer its number.
QString TypedText(const QByteArray& body, ServiceClient::ValueType type);
