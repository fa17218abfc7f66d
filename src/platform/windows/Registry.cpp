#include "platform/Registry.h"
#include "platform/windows/WideText.h"

#include <windows.h>

#include <algorithm>
#include <memory>

namespace platform {
namespace {

struct KeyCloser {
    void operator()(HKEY key) const { ::RegCloseKey(key); }
};

using OwnedKey = std::unique_ptr<std::remove_pointer_t<HKEY>, KeyCloser>;

HKEY Root(const RegistryKey& key) {
    return key.root == RegistryRoot::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

OwnedKey OpenForReading(const RegistryKey& key) {
    HKEY opened = nullptr;
    const LSTATUS status = ::RegOpenKeyExW(Root(key), Wide(key.path).c_str(), 0, KEY_QUERY_VALUE, &opened);
    return OwnedKey(status == ERROR_SUCCESS ? opened : nullptr);
}

std::wstring Expanded(const std::wstring& text) {
    std::wstring expanded(::ExpandEnvironmentStringsW(text.c_str(), nullptr, 0), L'\0');
    const DWORD size =
        ::ExpandEnvironmentStringsW(text.c_str(), expanded.data(), static_cast<DWORD>(expanded.size()));
    if (size == 0 || size > expanded.size())
        return text;
    expanded.resize(size - 1);
    return expanded;
}

} // namespace

std::optional<uint32_t> ReadRegistryDword(const RegistryKey& key, const std::string& name) {
    const OwnedKey opened = OpenForReading(key);
    DWORD type = 0;
    DWORD value = 0;
    DWORD size = sizeof value;
    if (!opened || ::RegQueryValueExW(opened.get(), Wide(name).c_str(), nullptr, &type,
                                      reinterpret_cast<BYTE*>(&value), &size) != ERROR_SUCCESS)
        return {};
    return type == REG_DWORD && size == sizeof value ? std::optional<uint32_t>(value) : std::nullopt;
}

std::optional<std::string> ReadRegistryText(const RegistryKey& key, const std::string& name,
                                            size_t maxUnits) {
    const OwnedKey opened = OpenForReading(key);
    std::wstring data(maxUnits, L'\0');
    DWORD type = 0;
    DWORD size = static_cast<DWORD>(data.size() * sizeof(wchar_t));
    if (!opened || ::RegQueryValueExW(opened.get(), Wide(name).c_str(), nullptr, &type,
                                      reinterpret_cast<BYTE*>(data.data()), &size) != ERROR_SUCCESS)
        return {};
    if (type != REG_SZ && type != REG_EXPAND_SZ)
        return {};
    data.resize(std::min<size_t>(size / sizeof(wchar_t), data.find(L'\0')));
    return Narrow(type == REG_EXPAND_SZ ? Expanded(data) : data);
}

bool WriteRegistryDword(const RegistryKey& key, const std::string& name, uint32_t value) {
    HKEY made = nullptr;
    if (::RegCreateKeyExW(Root(key), Wide(key.path).c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_SET_VALUE,
                          nullptr, &made, nullptr) != ERROR_SUCCESS)
        return false;
    const OwnedKey opened(made);
    const DWORD data = value;
    return ::RegSetValueExW(opened.get(), Wide(name).c_str(), 0, REG_DWORD,
                            reinterpret_cast<const BYTE*>(&data), sizeof data) == ERROR_SUCCESS;
}

} // namespace platform
