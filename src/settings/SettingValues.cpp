#include "settings/SettingValues.h"

using namespace Qt::Literals::StringLiterals;

SettingReads ReadSettings(const ServiceClient& service, const QStringList& names, std::stop_token stop) {
    SettingReads reads;
    for (const QString& name : names) {
        const ServiceAnswer answer = reads.reached ? service.GetSetting(name, stop) : ServiceAnswer();
        reads.reached = IsReached(answer);
        const SettingState state = SettingStateOf(answer);
        reads.settings.push_back({state, state == SettingState::Set ? answer.body : QByteArray()});
    }
    return reads;
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
        return service.SetBoolSetting(name, SettingFlag(text.toUtf8()), stop);
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
        return SettingFlag(body) ? u"True"_s : u"False"_s;
    case ServiceClient::ValueType::String:
        break;
    }
    return SettingText(body);
}
