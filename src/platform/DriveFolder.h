#pragma once

#include <filesystem>
#include <string>

namespace platform {

/// Where a virtual directory is seen as a folder: below the drive of this letter, or below `home`, the folder
/// in which the service shows its directories where there are no drives. As OpenInShell takes it.
std::string DriveFolder(char16_t letter, const std::filesystem::path& home, const std::string& name);

} // namespace platform
