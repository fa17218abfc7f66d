#include "zep/UserSettings.h"

#include "platform/Registry.h"
#include "zep/Text.h"

namespace {

constexpr std::size_t LongestText = std::size_t{64} << 10;
const platform::RegistryKey UserKey{platform::RegistryRoot::CurrentUser, "SOFTWARE\\Brenvia\\Settings"};

} // namespace

std::optional<QString> ZEPSettingsGetWString(const QString& name) {
    const auto text = platform::ReadRegistryText(UserKey, ZEPUnicodeToUTF8(name).toStdString(), LongestText);
    return text ? std::optional(ZEPUTF8ToUnicode(*text)) : std::nullopt;
}

bool ZEPSettingsGetSwitch(const QString& name) {
    return platform::ReadRegistryDword(UserKey, ZEPUnicodeToUTF8(name).toStdString()).value_or(0) != 0;
}

bool ZEPSettingsSetSwitch(const QString& name, bool on) {
    return platform::WriteRegistryDword(UserKey, ZEPUnicodeToUTF8(name).toStdString(), on ? 1 : 0);
}
