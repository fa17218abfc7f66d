#include "settings/SettingValues.h"

using namespace Qt::Literals::StringLiterals;

SettingBodies ReadSettings(const ServiceClient& service, const QStringList& names, std::stop_token stop) {
    SettingBodies bodies;
    for (const QString& name : names) {
        const ServiceAnswer answer = service.GetSetting(name, stop);
        if (!IsReached(answer))
            break;
        bodies.push_back(answer ? std::optional(answer.body) : std::nullopt);
    }
    return bodies;
}

bool IsReached(const ServiceAnswer& answer) {
    return answer.outcome == ServiceOutcome::Answered || answer.outcome == ServiceOutcome::OtherStatus;
}

ServiceAnswer WriteSetting(const ServiceClient& service, const QString& name, ServiceClient::ValueType type,
                           const QString& text, std::stop_token stop) {
    switch (type) {
    case ServiceClient::ValueType::Integer:
        return service.SetIntSetting(name, LeadingNumber(text.toUtf8()), stop);
    case ServiceClient::ValueType::Boolean:
        return service.SetBoolSetting(name, text.compare("True"_L1, Qt::CaseInsensitive) == 0, stop);
    case ServiceClient::ValueType::String:
        break;
    }
    return service.SetStringSetting(name, text, stop);
}

QString TypedText(const QByteArray& body, ServiceClient::ValueType type) {
    switch (type) {
    case ServiceClient::ValueType::Integer:
        return QString::number(LeadingNumber(body));
    case ServiceClient::ValueType::Boolean:
        return SettingText(body).compare("true"_L1, Qt::CaseInsensitive) == 0 ? u"True"_s : u"False"_s;
    case ServiceClient::ValueType::String:
        break;
    }
    return SettingText(body);
}
