#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace platform {

/// `$BREN_HOME`, made absolute, where it is set: the data folder of a world of its own.
std::optional<std::filesystem::path> GivenHome();

/// The system does not tell where a folder stands; `what()` says so in a sentence.
class FolderUnknown : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Our folder below one of the system, of which `what` says what it is for. Throws FolderUnknown when the
/// system's is none: a path that is not absolute would lead to wherever the program was started.
std::filesystem::path OwnFolder(const std::filesystem::path& systems, const char* what);

/// The folder below which the service and the console share their data: GivenHome() or the system's place for
/// that, always absolute. Throws FolderUnknown.
std::filesystem::path DataFolder(bool serverMode);

/// The running executable, links resolved, and its folder.
std::filesystem::path ExecutableFile();
std::filesystem::path ExecutableFolder();

/// Makes a folder and those above it that are missing. Each belongs to the owner of the one it stands in,
/// so that an elevated console leaves nothing behind that its user cannot write.
bool MakeFolders(const std::filesystem::path& folder);

/// A file of the console's own memory (column widths, filters), apart from the registry; its folder is made
/// when missing. That of the user whose rights this process has; empty when the system tells no place for it.
std::filesystem::path ConsoleStateFile();

/// ProgramFilesCommon is the machine's folder of what several programs share, "common" below `$BREN_HOME`
/// where that is set; the others are the user's.
enum class SpecialFolder {
    Home,
    Desktop,
    Documents,
    Downloads,
    Music,
    Pictures,
    Videos,
    StartMenu,
    ProgramFilesCommon
};

/// Empty when the system names no such folder. Makes nothing.
std::filesystem::path SpecialFolderPath(SpecialFolder folder);

/// A path from UTF-8 text, and back.
std::filesystem::path PathFromUtf8(const std::string& text);
std::string Utf8FromPath(const std::filesystem::path& path);

} // namespace platform
