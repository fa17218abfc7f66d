#include "platform/Registry.h"

#include <doctest/doctest.h>

#include <windows.h>

#include <string_view>

using namespace platform;

namespace {

constexpr const wchar_t* TestPath = L"Software\\BrenviaTest";
const RegistryKey TestKey{RegistryRoot::CurrentUser, "Software\\BrenviaTest"};
const RegistryKey FreshKey{RegistryRoot::CurrentUser, "Software\\BrenviaTest\\Fresh\\Settings"};

/// A key of the test's own, gone with the object.
class KeyForTest {
public:
    KeyForTest() {
        ::RegCreateKeyExW(HKEY_CURRENT_USER, TestPath, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS,
                          nullptr, &m_key, nullptr);
    }
    KeyForTest(const KeyForTest&) = delete;
    KeyForTest& operator=(const KeyForTest&) = delete;
    ~KeyForTest() {
        ::RegDeleteTreeW(m_key, nullptr);
        ::RegCloseKey(m_key);
        ::RegDeleteKeyW(HKEY_CURRENT_USER, TestPath);
    }

    void Put(const wchar_t* name, DWORD type, std::string_view octets) const {
        ::RegSetValueExW(m_key, name, 0, type, reinterpret_cast<const BYTE*>(octets.data()),
                         static_cast<DWORD>(octets.size()));
    }

private:
    HKEY m_key = nullptr;
};

} // namespace

TEST_CASE("registry values of every type and length") {
    struct Case {
        const char* name;
        DWORD type;
        std::string_view octets;
        std::optional<std::string> text;
        std::optional<uint32_t> dword;
    };
    using namespace std::string_view_literals;
    const Case cases[] = {
        {"text", REG_SZ, "Q\0B\0S\0\0\0"sv, "QBS", {}},
        {"no terminator", REG_SZ, "Q\0B\0S\0"sv, "QBS", {}},
        {"ends early", REG_SZ, "Q\0\0\0S\0\0\0"sv, "Q", {}},
        {"empty", REG_SZ, ""sv, "", {}},
        {"beyond the code page", REG_SZ, "\xAC\x20\x34\xD8\x1E\xDD\0\0"sv, "\u20AC\U0001D11E", {}},
        {"expanded", REG_EXPAND_SZ, "%\0B\0%\0x\0%\0N\0%\0\0\0"sv, "a long textx%N%", {}},
        {"not expanded", REG_SZ, "%\0B\0%\0\0\0"sv, "%B%", {}},
        {"too long",
         REG_SZ,
         "1\0"
         "2\0"
         "3\0"
         "4\0"
         "5\0"
         "6\0"
         "7\0"
         "8\0\0\0"sv,
         {},
         {}},
        {"number", REG_DWORD, "\x07\0\0\x80"sv, {}, 0x80000007},
        {"octets", REG_BINARY, "QBS\0"sv, {}, {}},
        {"long number", REG_QWORD, "\x07\0\0\0\0\0\0\0"sv, {}, {}},
    };
    const KeyForTest key;
    ::SetEnvironmentVariableW(L"B", L"a long text");
    for (const Case& expected : cases) {
        CAPTURE(expected.name);
        key.Put(L"Value", expected.type, expected.octets);
        CHECK(ReadRegistryText(TestKey, "Value", 8) == expected.text);
        CHECK(ReadRegistryDword(TestKey, "Value") == expected.dword);
    }
    CHECK_FALSE(ReadRegistryDword(TestKey, "Missing"));
}

TEST_CASE("a key that the console makes is volatile") {
    const KeyForTest key;
    CHECK_FALSE(ReadRegistryDword(FreshKey, "Width"));
    CHECK(WriteRegistryDword(FreshKey, "Width", 986));
    CHECK(WriteRegistryDword(FreshKey, "Width", 640));
    CHECK(ReadRegistryDword(FreshKey, "width") == 640);
    // Below a volatile key the system refuses a lasting one.
    HKEY lasting = nullptr;
    CHECK(::RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\BrenviaTest\\Fresh\\Settings\\Lasting", 0, nullptr,
                            0, KEY_READ, nullptr, &lasting, nullptr) == ERROR_CHILD_MUST_BE_VOLATILE);
}
