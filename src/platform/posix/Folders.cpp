#include "platform/Folders.h"
#include "platform/Environment.h"
#include "platform/posix/UserFolders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr const char* Maker = "brenvia";

/// An absolute folder of the environment, which is the only kind that the desktop's rules accept.
fs::path FolderOr(const char* variable, const fs::path& otherwise) {
    const fs::path folder = EnvironmentVariable(variable).value_or("");
    return folder.is_absolute() ? folder : otherwise;
}

/// What the system's list of users says; empty when it does not know this one.
fs::path AccountHome() {
    const passwd* const entry = ::getpwuid(::geteuid());
    const fs::path home = entry && entry->pw_dir ? entry->pw_dir : "";
    return home.is_absolute() ? home : fs::path();
}

/// Empty without a home.
fs::path BelowHome(const char* name) {
    const fs::path home = UserHome();
    return home.empty() ? home : home / name;
}

/// Whether a process with raised rights would make this folder in that of somebody else.
bool BelongsToAnother(fs::path folder) {
    struct stat found = {};
    while (folder.has_relative_path() && ::stat(folder.c_str(), &found) != 0)
        folder = folder.parent_path();
    return ::geteuid() == 0 && found.st_uid != 0;
}

/// The value of a line like XDG_DESKTOP_DIR="$HOME/Desktop" in the user's list of folders.
fs::path UserDirectory(const std::string& key, const char* otherwise) {
    std::ifstream list(FolderOr("XDG_CONFIG_HOME", BelowHome(".config")) / "user-dirs.dirs");
    const std::string start = key + "=\"";
    for (std::string line; std::getline(list, line);) {
        if (!line.starts_with(start) || !line.ends_with('"') || line.size() == start.size())
            continue;
        const std::string value = line.substr(start.size(), line.size() - start.size() - 1);
        if (value.starts_with("$HOME/"))
            return BelowHome(value.c_str() + 6);
        if (value.starts_with('/'))
            return value;
    }
    return BelowHome(otherwise);
}

/// A folder in a place where everybody may make one of this name.
bool MakePrivateFolder(const fs::path& folder) {
    struct stat found = {};
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        return false;
    return ::lstat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == ::geteuid();
}

} // namespace

fs::path UserHome() {
    fs::path home = FolderOr("HOME", {});
    return home.empty() ? AccountHome() : home;
}

fs::path UserConfigFolder() {
    const fs::path config = FolderOr("XDG_CONFIG_HOME", BelowHome(".config"));
    return config.empty() ? config : config / Maker;
}

fs::path UserRuntimeFolder() {
    if (const fs::path given = FolderOr("XDG_RUNTIME_DIR", {}); !given.empty())
        return MakeFolders(given / Maker) ? given / Maker : fs::path();
    const fs::path own = std::string("/tmp/") + Maker + '-' + std::to_string(::geteuid());
    return MakePrivateFolder(own) ? own : fs::path();
}

fs::path DataFolder(bool serverMode) {
    if (const auto home = GivenHome())
        return *home;
    return OwnFolder(serverMode ? fs::path("/var/lib") : FolderOr("XDG_DATA_HOME", BelowHome(".local/share")),
                     "this user's data");
}

fs::path ExecutableFile() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error);
}

fs::path ExecutableFolder() {
    return ExecutableFile().parent_path();
}

fs::path ConsoleStateFile() {
    fs::path state = FolderOr("XDG_STATE_HOME", BelowHome(".local/state"));
    // It is written by name, which nobody with raised rights should do in another one's folder.
    if (BelongsToAnother(state))
        state = AccountHome() / ".local/state";
    if (!state.is_absolute() || !MakeFolders(state / Maker))
        return {};
    return state / Maker / "console.ini";
}

fs::path SpecialFolderPath(SpecialFolder folder) {
    switch (folder) {
    case SpecialFolder::Home:
        return UserHome();
    case SpecialFolder::Desktop:
        return UserDirectory("XDG_DESKTOP_DIR", "Desktop");
    case SpecialFolder::Downloads:
        return UserDirectory("XDG_DOWNLOAD_DIR", "Downloads");
    case SpecialFolder::Music:
        return UserDirectory("XDG_MUSIC_DIR", "Music");
    case SpecialFolder::Pictures:
        return UserDirectory("XDG_PICTURES_DIR", "Pictures");
    case SpecialFolder::Videos:
        return UserDirectory("XDG_VIDEOS_DIR", "Videos");
    case SpecialFolder::StartMenu:
        return FolderOr("XDG_DATA_HOME", BelowHome(".local/share")) / "applications";
    case SpecialFolder::Documents:
        return UserDirectory("XDG_DOCUMENTS_DIR", "Documents");
    case SpecialFolder::ProgramFilesCommon:
        return DataFolder(true) / "common";
    }
    return {};
}

fs::path PathFromUtf8(const std::string& text) {
    return text;
}

std::string Utf8FromPath(const fs::path& path) {
    return path.string();
}

} // namespace platform
