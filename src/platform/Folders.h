#pragma once

#include <filesystem>
#include <string>

namespace platform {

/// The folder below which the service and the console share their data (`$BREN_HOME` where it is set).
std::filesystem::path DataFolder(bool serverMode);

/// The running executable, links resolved, and its folder.
std::filesystem::path ExecutableFile();
std::filesystem::path ExecutableFolder();

/// A file of the console's own memory (column widths, filters), apart from the registry; its folder is made
/// when missing.
std::filesystem::path ConsoleStateFile();

/// Desktop, StartMenu and Documents are the user's; ProgramFilesCommon is the machine's folder of what
/// several programs share, "common" below `$BREN_HOME` where that is set.
enum class SpecialFolder { Desktop, StartMenu, Documents, ProgramFilesCommon };

/// Empty when the system names no such folder. Makes nothing.
std::filesystem::path SpecialFolderPath(SpecialFolder folder);

/// A path from UTF-8 text, and back.
std::filesystem::path PathFromUtf8(const std::string& text);
std::string Utf8FromPath(const std::filesystem::path& path);

} // namespace platform
