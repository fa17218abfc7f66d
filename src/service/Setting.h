#pragma once

#include "service/ServiceClient.h"

#include <type_traits>

/// A setting of the service whose values are texts: a decimal number, the text itself, "True" or "False".
struct TextSetting {
    QString name;
    ServiceClient::ValueType type = ServiceClient::ValueType::String;
    QString fallback; ///< stands while the service has none
};

/// What a read brought; the fallback unless the setting is set.
template <typename Value>
struct SettingValue {
    SettingState state = SettingState::NotRead;
    Value value{};
    bool silent = true; ///< nothing answered, so that asking for more is of no use now

    bool WasRead() const { return state != SettingState::NotRead; }
};

/// The text as the service keeps it, whatever the type.
SettingValue<QString> ReadSetting(const ServiceClient& service, const TextSetting& setting,
                                  std::stop_token stop = {});
/// Writes the text as the type understands it.
ServiceAnswer WriteSetting(const ServiceClient& service, const TextSetting& setting, const QString& text,
                           std::stop_token stop = {});

/// Whether a secret is kept as it was typed.
enum class KeptSecret { AsTyped, Otherwise, NotTold };
/// Reads back a secret that was just written.
KeptSecret CheckSecret(const ServiceClient& service, const TextSetting& setting, const QString& typed,
                       std::stop_token stop = {});

/// The text as the type understands it: of an integer its leading number, of a boolean "True" or "False".
QString TypedText(const QString& text, ServiceClient::ValueType type);

/// A setting whose type is known: its name at the service, and what stands while the service has none.
template <typename Value>
struct Setting {
    const char* name;
    Value fallback{};

    TextSetting AsText() const { return {QString::fromLatin1(name), Type(), TextOf(fallback)}; }

    static QString TextOf(const Value& value) {
        if constexpr (std::is_same_v<Value, bool>)
            return value ? QStringLiteral("True") : QStringLiteral("False");
        else if constexpr (std::is_same_v<Value, int>)
            return QString::number(value);
        else
            return value;
    }
    static Value FromText(const QString& text) {
        if constexpr (std::is_same_v<Value, bool>)
            return SettingFlag(text.toUtf8());
        else if constexpr (std::is_same_v<Value, int>)
            return LeadingNumber(text.toUtf8());
        else
            return text;
    }

private:
    static constexpr ServiceClient::ValueType Type() {
        return std::is_same_v<Value, bool>  ? ServiceClient::ValueType::Boolean
               : std::is_same_v<Value, int> ? ServiceClient::ValueType::Integer
                                            : ServiceClient::ValueType::String;
    }
};

template <typename Value>
SettingValue<Value> ReadSetting(const ServiceClient& service, const Setting<Value>& setting,
                                std::stop_token stop = {}) {
    const SettingValue<QString> text = ReadSetting(service, setting.AsText(), std::move(stop));
    return {text.state, Setting<Value>::FromText(text.value), text.silent};
}

template <typename Value>
ServiceAnswer WriteSetting(const ServiceClient& service, const Setting<Value>& setting,
                           const std::type_identity_t<Value>& value, std::stop_token stop = {}) {
    return WriteSetting(service, setting.AsText(), Setting<Value>::TextOf(value), std::move(stop));
}
