#include "zep/UserSettings.h"

#include "platform/Registry.h"
#include "zep/Text.h"

namespace {

constexpr std::size_t LongestText = std::size_t{64} << 10;

} // namespace

std::optional<QString> ZEPSettingsGetWString(const QString& name) {
    const platform::RegistryKey key{platform::RegistryRoot::CurrentUser, "SOFTWARE\\Brenvia\\Settings"};
    const auto text = platform::ReadRegistryText(key, ZEPUnicodeToUTF8(name).toStdString(), LongestText);
    return text ? std::optional(ZEPUTF8ToUnicode(*text)) : std::nullopt;
}
