#include "platform/Registry.h"
#include "../Surroundings.h"

#include <doctest/doctest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace platform;

namespace {

const RegistryKey Machine{RegistryRoot::LocalMachine, "SOFTWARE\\Brenvia"};
const RegistryKey User{RegistryRoot::CurrentUser, "SOFTWARE\\Brenvia\\Settings"};
constexpr const char* UserFile = "SOFTWARE/Brenvia/Settings.ini";

} // namespace

TEST_CASE("values have the type that their text says") {
    struct Case {
        std::string line;
        std::optional<std::string> text;
        std::optional<uint32_t> dword;
    };
    const TemporaryHome home;
    const Case cases[] = {
        {"Value=QBS", "QBS", {}},
        {"  value = QBS  \r", "QBS", {}},
        {"Value=\"a; b\"", "a; b", {}},
        {"Value=\"7\"", "7", {}},
        {"Value=", "", {}},
        {"Value=${BREN_HOME}", home.Path().string(), {}},
        {"Value=a${BREN_TEST_NONE}b${}c${", "a${BREN_TEST_NONE}b${}c${", {}},
        {"Value=\"${BREN_HOME}\"", "${BREN_HOME}", {}},
        {"Value=\"", "\"", {}},
        {std::string("Value=QBS\0rest", 14), "QBS", {}},
        {"Value=7", {}, 7},
        {"Value=0x1F", {}, 31},
        {"Value=4294967295", {}, 4294967295},
        {"Value=4294967296", "4294967296", {}},
        {"Value=-1", "-1", {}},
        {"Value=1\nValue=2", {}, 1},
        {"Value", {}, {}},
        {"; Value=1\n#Value=1\n[Value=1", {}, {}},
        {"Values=1", {}, {}},
        {"=1", {}, {}},
    };
    for (const Case& expected : cases) {
        CAPTURE(expected.line);
        WriteFile(home.Path() / "etc/SOFTWARE/Brenvia.ini", expected.line);
        CHECK(ReadRegistryText(Machine, "Value", 520) == expected.text);
        CHECK(ReadRegistryDword(Machine, "Value") == expected.dword);
    }
}

TEST_CASE("a text fits with its terminator or is none") {
    const TemporaryHome home;
    WriteFile(home.Path() / "etc/SOFTWARE/Brenvia.ini", "Value=" + std::string(519, 'x'));
    CHECK(ReadRegistryText(Machine, "Value", 520) == std::string(519, 'x'));
    CHECK_FALSE(ReadRegistryText(Machine, "Value", 519));
}

TEST_CASE("a missing key and a key that leads out of the registry have no values") {
    const TemporaryHome home;
    WriteFile(home.Path() / "secret.ini", "Value=1");
    for (const char* path : {"SOFTWARE\\Brenvia", "..\\secret", "", "SOFTWARE\\\\Brenvia", "/secret"}) {
        CAPTURE(path);
        CHECK_FALSE(ReadRegistryDword({RegistryRoot::LocalMachine, path}, "Value"));
    }
    CHECK_FALSE(WriteRegistryDword({RegistryRoot::LocalMachine, "..\\secret"}, "Value", 2));
    for (const char* name : {"", "a=b", "a\nb", ";a", " a"})
        CHECK_FALSE(WriteRegistryDword(User, name, 2));
}

TEST_CASE("a key that the console makes is gone with the session, one that stands keeps all it holds") {
    const TemporaryHome home;
    CHECK(WriteRegistryDword(User, "Width", 986));
    CHECK(WriteRegistryDword(User, "Height", 678));
    CHECK(WriteRegistryDword(User, "width", 640));
    CHECK(ReadFile(home.Path() / "brenvia" / UserFile) == "width=640\nHeight=678\n");
    CHECK(ReadRegistryDword(User, "Width") == 640);

    const std::filesystem::path lasting = home.Path() / "config/brenvia" / UserFile;
    WriteFile(lasting, "; mine\nWidth=1\nText=x\nWIDTH=2");
    CHECK(ReadRegistryDword(User, "Width") == 1);
    CHECK_FALSE(ReadRegistryDword(User, "Height"));
    CHECK(WriteRegistryDword(User, "Width", 5));
    CHECK(WriteRegistryDword(User, "Height", 0xFFFFFFFF));
    CHECK(ReadFile(lasting) == "; mine\nWidth=5\nText=x\nHeight=4294967295\n");
}

TEST_CASE("two writers lose nothing and a reader sees no half-written key") {
    const TemporaryHome home;
    CHECK(WriteRegistryDword(User, "Fixed", 7));
    std::atomic<int> lost = 0;
    std::vector<std::jthread> writers;
    for (const std::string name : {"One", "Two"})
        writers.emplace_back([name, &lost] {
            for (uint32_t value = 1; value <= 40; ++value) {
                WriteRegistryDword(User, name, value);
                lost += ReadRegistryDword(User, name) != value;
            }
        });
    for (int look = 0; look < 300; ++look)
        REQUIRE(ReadRegistryDword(User, "Fixed") == 7);
    writers.clear();
    CHECK(lost == 0);
}

TEST_CASE("a key that cannot be written says so") {
    const TemporaryHome home;
    WriteFile(home.Path() / "brenvia/SOFTWARE", "a file in the folder's place");
    CHECK_FALSE(WriteRegistryDword(User, "Width", 1));
}
