#include "support/RegistryText.h"

#include <QTest>

#include <windows.h>

namespace {

HKEY RootOf(platform::RegistryRoot root) {
    return root == platform::RegistryRoot::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

const wchar_t* Wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

} // namespace

RegistryText::RegistryText(platform::RegistryRoot root, QString key, QString name, const QString& text)
    : m_root(root), m_key(std::move(key)), m_name(std::move(name)) {
    const auto size = static_cast<DWORD>((text.size() + 1) * 2);
    HKEY opened = nullptr; // volatile, as what stands above it may be
    QCOMPARE(::RegCreateKeyExW(RootOf(m_root), Wide(m_key), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                               nullptr, &opened, nullptr),
             LSTATUS(ERROR_SUCCESS));
    QCOMPARE(
        ::RegSetValueExW(opened, Wide(m_name), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.utf16()), size),
        LSTATUS(ERROR_SUCCESS));
    ::RegCloseKey(opened);
}

RegistryText::~RegistryText() {
    ::RegDeleteKeyValueW(RootOf(m_root), Wide(m_key), Wide(m_name));
}
