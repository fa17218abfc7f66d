#include "Surroundings.h"
#include "platform/Folders.h"
#include "platform/MappedFile.h"

#include <doctest/doctest.h>

#include <fstream>

namespace fs = std::filesystem;
using platform::MappedFile;

namespace {

std::optional<std::string> Part(const MappedFile& file, uint64_t offset, size_t size) {
    std::string octets(size, '?');
    const bool read = file.Read(offset, std::as_writable_bytes(std::span(octets)));
    return read ? std::optional(octets) : std::nullopt;
}

} // namespace

TEST_CASE("a mapped file shows what another one writes, and never more than it holds") {
    const TemporaryFolder folder;
    const fs::path path = folder.Path() / "counters.map";
    CHECK_FALSE(MappedFile::Open(path));
    CHECK_FALSE(MappedFile::Open(folder.Path()));

    WriteFile(path, "0123456789");
    const std::optional<MappedFile> file = MappedFile::Open(path);
    REQUIRE(file);
    REQUIRE(file->Bytes().size() == 10);
    {
        std::fstream writer(path, std::ios::in | std::ios::out | std::ios::binary);
        writer.seekp(4) << "X";
    }
    CHECK(file->Bytes()[4] == std::byte{'X'});
    CHECK(Part(*file, 3, 3) == "3X5");
    CHECK(Part(*file, 10, 0) == "");
    CHECK_FALSE(Part(*file, 8, 3));
    CHECK_FALSE(Part(*file, UINT64_MAX, 2));
    CHECK_FALSE(file->IsReplaced());
}

TEST_CASE("an empty file maps to nothing") {
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "empty", "");
    const std::optional<MappedFile> file = MappedFile::Open(folder.Path() / "empty");
    REQUIRE(file);
    CHECK(file->Bytes().empty());
    CHECK_FALSE(Part(*file, 0, 1));
}

TEST_CASE("a path survives its way through text") {
    const std::string text = "r\xC3\xA4ume/\xE2\x82\xAC";
    CHECK(platform::Utf8FromPath(platform::PathFromUtf8(text)).size() == text.size());
    const TemporaryFolder folder;
    WriteFile(folder.Path() / platform::PathFromUtf8("\xE2\x82\xAC.txt"), "euro");
    CHECK(fs::exists(folder.Path() / platform::PathFromUtf8("\xE2\x82\xAC.txt")));
    CHECK(fs::is_directory(platform::ExecutableFolder()));
}
