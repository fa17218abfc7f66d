#include "../Surroundings.h"
#include "platform/Folders.h"
#include "platform/MappedFile.h"

#include <doctest/doctest.h>

#include <array>

namespace fs = std::filesystem;
using namespace platform;

TEST_CASE("a mapped file that is cut short or replaced is noticed, and reading it harms nobody") {
    const TemporaryFolder folder;
    const fs::path path = folder.Path() / "counters.map";
    WriteFile(path, std::string(20000, 'x'));
    const std::optional<MappedFile> file = MappedFile::Open(path);
    REQUIRE(file);
    std::array<std::byte, 16> octets{};
    fs::resize_file(path, 8);
    CHECK_FALSE(file->Read(16384, octets));
    CHECK(file->IsReplaced());

    fs::resize_file(path, 20000);
    CHECK(file->Read(16384, octets));
    CHECK_FALSE(file->IsReplaced());
    WriteFile(folder.Path() / "fresh", std::string(20000, 'y'));
    fs::rename(folder.Path() / "fresh", path);
    CHECK(file->IsReplaced());
    fs::remove(path);
    CHECK(file->IsReplaced());
}

TEST_CASE("folders stand where the environment puts them") {
    const TemporaryFolder folder;
    const std::string home = folder.Text();
    struct Case {
        const char* variable;
        std::optional<std::string> value;
        fs::path desktopData;
        fs::path serverData;
    };
    const VariableSet user("HOME", home);
    const VariableSet state("XDG_STATE_HOME", {});
    const Case cases[] = {
        {"BREN_HOME", home + "/bren", home + "/bren", home + "/bren"},
        {"BREN_HOME", "bren/../data", fs::current_path() / "data", fs::current_path() / "data"},
        {"BREN_HOME", {}, home + "/.local/share/brenvia", "/var/lib/brenvia"},
        {"XDG_DATA_HOME", home + "/share", home + "/share/brenvia", "/var/lib/brenvia"},
        {"XDG_DATA_HOME", "relative", home + "/.local/share/brenvia", "/var/lib/brenvia"},
    };
    for (const Case& expected : cases) {
        const VariableSet noHome("BREN_HOME", {});
        const VariableSet noData("XDG_DATA_HOME", {});
        const VariableSet variable(expected.variable, expected.value);
        CHECK(DataFolder(false) == expected.desktopData);
        CHECK(DataFolder(true) == expected.serverData);
    }
    CHECK_THROWS_AS(OwnFolder({}, "data"), FolderUnknown);
    CHECK_THROWS_AS(OwnFolder("data", "data"), FolderUnknown);
    CHECK(fs::is_directory(ConsoleStateFile().parent_path()));

    const VariableSet config("XDG_CONFIG_HOME", home + "/config");
    CHECK(SpecialFolderPath(SpecialFolder::Desktop) == home + "/Desktop");
    WriteFile(folder.Path() / "config/user-dirs.dirs",
              "# folders\nXDG_DESKTOP_DIR=\"$HOME/Tisch\"\nXDG_DOCUMENTS_DIR=\"/papers\"\n");
    CHECK(SpecialFolderPath(SpecialFolder::Desktop) == home + "/Tisch");
    CHECK(SpecialFolderPath(SpecialFolder::Documents) == "/papers");
}
