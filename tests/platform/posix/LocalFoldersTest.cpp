#include "platform/LocalFolders.h"
#include "../Surroundings.h"
#include "platform/posix/Mounts.h"

#include <doctest/doctest.h>

#include <sys/stat.h>

#include <map>

namespace fs = std::filesystem;
using namespace platform;

namespace {

/// Each entry in a word: its kind, its size, and whether it is hidden.
std::map<std::string, std::string> EntriesOf(const fs::path& folder, FolderDetail detail) {
    std::map<std::string, std::string> entries;
    const FolderOutcome outcome = ReadFolder(folder, detail, [&entries](const FolderEntry& entry) {
        const char* const kinds[] = {"file ", "folder ", "link ", "other "};
        entries[entry.name] = kinds[static_cast<int>(entry.kind)] + std::to_string(entry.size) +
                              (entry.isHidden ? " hidden" : "");
        return true;
    });
    CHECK(outcome == FolderOutcome::Whole);
    return entries;
}

} // namespace

TEST_CASE("a folder is read as it is, its links for themselves") {
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "seven", "1234567");
    WriteFile(folder.Path() / ".dot", "x");
    fs::create_directory(folder.Path() / "caf\xE9\n");
    fs::create_directory_symlink(folder.Path(), folder.Path() / "up");
    fs::create_symlink("nowhere", folder.Path() / "broken");
    CHECK(::mkfifo((folder.Path() / "pipe").c_str(), 0600) == 0);
    using Entries = std::map<std::string, std::string>;
    CHECK(EntriesOf(folder.Path(), FolderDetail::Sizes) == Entries{{"seven", "file 7"},
                                                                   {".dot", "file 1 hidden"},
                                                                   {"caf\xE9\n", "folder 0"},
                                                                   {"up", "link 0"},
                                                                   {"broken", "link 0"},
                                                                   {"pipe", "other 0"}});
    CHECK(EntriesOf(folder.Path(), FolderDetail::Names)["seven"] == "file 0");

    int seen = 0;
    const auto one = [&seen](const FolderEntry&) { return ++seen < 2; };
    CHECK(ReadFolder(folder.Path(), FolderDetail::Names, one) == FolderOutcome::Left);
    CHECK(seen == 2);
    CHECK(RealPath(folder.Path() / "up" / "up" / "seven") == RealPath(folder.Path()) / "seven");
    CHECK(RealPath(folder.Path() / "broken").empty());
}

TEST_CASE("a folder that cannot be read says why") {
    const TemporaryFolder folder;
    WriteFile(folder.Path() / "file", "");
    fs::create_directory_symlink(folder.Path() / "loop", folder.Path() / "loop");
    fs::path deep = folder.Path();
    while (deep.native().size() < 5000)
        deep /= std::string(200, 'x');
    const struct {
        fs::path path;
        FolderOutcome outcome;
    } cases[] = {{folder.Path() / "gone", FolderOutcome::Missing},
                 {folder.Path() / "file", FolderOutcome::NoFolder},
                 {folder.Path() / "file" / "below", FolderOutcome::NoFolder},
                 {folder.Path() / "loop", FolderOutcome::Broken},
                 {deep, FolderOutcome::TooLong}};
    for (const auto& [path, outcome] : cases) {
        CHECK(ReadFolder(path, FolderDetail::Names, [](const FolderEntry&) { return true; }) == outcome);
        CHECK(ProbeFolder(path) == outcome);
    }
    CHECK(ProbeFolder(folder.Path()) == FolderOutcome::Whole);
}

TEST_CASE("volumes are what holds a person's files, servers unasked") {
    const TemporaryFolder folder;
    fs::create_directories(folder.Path() / "my disk");
    WriteFile(folder.Path() / "hosts", "");
    const std::string at = folder.Text();
    WriteFile(folder.Path() / "mounts", "overlay / overlay rw 0 0\n"
                                        "proc /proc proc rw 0 0\n"
                                        "tmpfs /run tmpfs rw 0 0\n"
                                        "/dev/sdb1 " +
                                            at +
                                            "/my\\040disk ext4 rw 0 0\n"
                                            "/dev/sda1 " +
                                            at +
                                            "/hosts ext4 rw 0 0\n"
                                            "/dev/loop3 /snap/x squashfs ro 0 0\n"
                                            "server:/export " +
                                            at +
                                            "/far nfs4 rw 0 0\n"
                                            "tank/data /tank zfs rw 0 0\n"
                                            "/dev/sdc1 " +
                                            at + "/my\\040disk ext4 rw 0 0\n");
    std::vector<std::pair<std::string, bool>> found;
    for (const Volume& volume : VolumesOf(folder.Path() / "mounts"))
        found.emplace_back(volume.path.string(), volume.isRemote);
    CHECK(found == std::vector<std::pair<std::string, bool>>{
                       {"/", false}, {at + "/my disk", false}, {at + "/far", true}, {"/tank", false}});
    CHECK(VolumesOf(folder.Path() / "none").size() == 1);
    CHECK(Volumes().front().path == "/");
}
