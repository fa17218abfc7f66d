#pragma once

#include "service/ServiceClient.h"

#include <QByteArray>
#include <QStringList>

#include <optional>
#include <stop_token>
#include <vector>

/// What one batch of reads brought, in the order of the names: a setting's body, or none when the service
/// answered that there is none. Shorter than the names when the service stopped to answer on the way.
using SettingBodies = std::vector<std::optional<QByteArray>>;

SettingBodies ReadSettings(const ServiceClient& service, const QStringList& names, std::stop_token stop);

/// Writes the text as the type wants it: a number, the text itself, "True" or "False".
ServiceAnswer WriteSetting(const ServiceClient& service, const QString& name, ServiceClient::ValueType type,
                           const QString& text, std::stop_token stop);

/// Whether the service was there to take or refuse the request.
bool IsReached(const ServiceAnswer& answer);

/// The body as text; of a boolean "True" or "False", of an integer its number.
QString TypedText(const QByteArray& body, ServiceClient::ValueType type);
