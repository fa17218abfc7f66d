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

/// The value of a line like XDG_DESKTOP_DIR="$HOME/Desktop" in the user's list of folders.
fs::path UserDirectory(const std::string& key, const char* otherwise) {
    std::ifstream list(FolderOr("XDG_CONFIG_HOME", UserHome() / ".config") / "user-dirs.dirs");
    const std::string start = key + "=\"";
    for (std::string line; std::getline(list, line);) {
        if (!line.starts_with(start) || !line.ends_with('"') || line.size() == start.size())
            continue;
        const std::string value = line.substr(start.size(), line.size() - start.size() - 1);
        if (value.starts_with("$HOME/"))
            return UserHome() / value.substr(6);
        if (value.starts_with('/'))
            return value;
    }
    return UserHome() / otherwise;
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
    if (fs::path home = FolderOr("HOME", {}); !home.empty())
        return home;
    const passwd* const entry = ::getpwuid(::geteuid());
    return entry && entry->pw_dir ? fs::path(entry->pw_dir) : fs::path("/");
}

fs::path UserConfigFolder() {
    return FolderOr("XDG_CONFIG_HOME", UserHome() / ".config") / Maker;
}

fs::path UserRuntimeFolder() {
    if (const fs::path given = FolderOr("XDG_RUNTIME_DIR", {}); !given.empty())
        return MakeFolders(given / Maker) ? given / Maker : fs::path();
    const fs::path own = std::string("/tmp/") + Maker + '-' + std::to_string(::geteuid());
    return MakePrivateFolder(own) ? own : fs::path();
}

bool MakeFolders(const fs::path& folder) {
    std::error_code error;
    if (fs::is_directory(folder, error))
        return true;
    const fs::path above = folder.parent_path();
    if (folder.empty() || above == folder || !MakeFolders(above))
        return false;
    if (::mkdir(folder.c_str(), 0755) != 0)
        return errno == EEXIST && fs::is_directory(folder, error);
    struct stat parent = {};
    if (::geteuid() == 0 && ::stat(above.c_str(), &parent) == 0)
        return ::lchown(folder.c_str(), parent.st_uid, parent.st_gid) == 0;
    return true;
}

fs::path DataFolder(bool serverMode) {
    if (const auto home = EnvironmentVariable("BREN_HOME"))
        return *home;
    if (serverMode)
        return fs::path("/var/lib") / Maker;
    return FolderOr("XDG_DATA_HOME", UserHome() / ".local/share") / Maker;
}

fs::path ExecutableFile() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error);
}

fs::path ExecutableFolder() {
    return ExecutableFile().parent_path();
}

fs::path ConsoleStateFile() {
    const fs::path folder = FolderOr("XDG_STATE_HOME", UserHome() / ".local/state") / Maker;
    MakeFolders(folder);
    return folder / "console.ini";
}

fs::path SpecialFolderPath(SpecialFolder folder) {
    switch (folder) {
    case SpecialFolder::Desktop:
        return UserDirectory("XDG_DESKTOP_DIR", "Desktop");
    case SpecialFolder::StartMenu:
        return FolderOr("XDG_DATA_HOME", UserHome() / ".local/share") / "applications";
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
