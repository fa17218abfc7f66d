#include "service/Setting.h"

using namespace Qt::Literals::StringLiterals;

SettingState StateOf(const ServiceAnswer& answer) {
    if (answer)
        return answer.length ? SettingState::Set : SettingState::NotRead;
    if (answer.outcome != ServiceOutcome::OtherStatus)
        return SettingState::Silent;
    return answer.status / 100 == 4 ? SettingState::NotSet : SettingState::NotRead;
}

SettingValue<QString> ReadSetting(const ServiceClient& service, const TextSetting& setting,
                                  std::stop_token stop) {
    const ServiceAnswer answer = service.GetSetting(setting.name, std::move(stop));
    const SettingState state = StateOf(answer);
    return {state, state == SettingState::Set ? SettingText(answer.body) : setting.fallback};
}

ServiceAnswer WriteSetting(const ServiceClient& service, const TextSetting& setting, const QString& text,
                           std::stop_token stop) {
    return service.SetSetting(setting.name, TypedText(text, setting.type), setting.type, std::move(stop));
}

QString TypedText(const QString& text, ServiceClient::ValueType type) {
    switch (type) {
    case ServiceClient::ValueType::Integer:
        return QString::number(LeadingNumber(text.toUtf8()));
    case ServiceClient::ValueType::Boolean:
        return IsTrue(text) ? u"True"_s : u"False"_s;
    case ServiceClient::ValueType::String:
        break;
    }
    return text;
}

bool IsTrue(const QString& text) {
    return text.compare("true"_L1, Qt::CaseInsensitive) == 0;
}
