#include "support/MachineText.h"

#include <QTest>

#include <windows.h>

namespace {

const wchar_t* Wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

} // namespace

MachineText::MachineText(QString key, QString name, const QString& text)
    : m_key(std::move(key)), m_name(std::move(name)) {
    const auto size = static_cast<DWORD>((text.size() + 1) * 2);
    QCOMPARE(::RegSetKeyValueW(HKEY_LOCAL_MACHINE, Wide(m_key), Wide(m_name), REG_SZ, Wide(text), size),
             LSTATUS(ERROR_SUCCESS));
}

MachineText::~MachineText() {
    ::RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, Wide(m_key), Wide(m_name));
}
