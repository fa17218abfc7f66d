#include "service/Setting.h"

using namespace Qt::Literals::StringLiterals;

SettingValue<QString> ReadSetting(const ServiceClient& service, const TextSetting& setting,
                                  std::stop_token stop) {
    const ServiceAnswer answer = service.GetSetting(setting.name, std::move(stop));
    const SettingState state = SettingStateOf(answer);
    const bool silent = !answer && answer.outcome != ServiceOutcome::OtherStatus;
    return {state, state == SettingState::Set ? SettingText(answer.body) : setting.fallback, silent};
}

ServiceAnswer WriteSetting(const ServiceClient& service, const TextSetting& setting, const QString& text,
                           std::stop_token stop) {
    return service.SetSetting(setting.name, TypedText(text, setting.type), setting.type, std::move(stop));
}

KeptSecret CheckSecret(const ServiceClient& service, const TextSetting& setting, const QString& typed,
                       std::stop_token stop) {
    const SettingValue<QString> kept = ReadSetting(service, setting, std::move(stop));
    if (!kept.WasRead())
        return KeptSecret::NotTold;
    return kept.value == typed ? KeptSecret::AsTyped : KeptSecret::Otherwise;
}

QString TypedText(const QString& text, ServiceClient::ValueType type) {
    switch (type) {
    case ServiceClient::ValueType::Integer:
        return QString::number(LeadingNumber(text.toUtf8()));
    case ServiceClient::ValueType::Boolean:
        return SettingFlag(text.toUtf8()) ? u"True"_s : u"False"_s;
    case ServiceClient::ValueType::String:
        break;
    }
    return text;
}
