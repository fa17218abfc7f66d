#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace platform {

/// Opens a file, folder or address as a double click would. False when the system has nothing to open it
/// with.
bool OpenInShell(const std::string& target);

/// Starts a program without waiting for it. False when there is nothing to execute.
bool StartProgram(const std::filesystem::path& executable, const std::vector<std::string>& arguments = {});

/// Puts a shortcut of this name to `target` into the folder, which is made when missing, in place of an older
/// one. False when it cannot be written.
bool MakeShortcut(const std::filesystem::path& folder, const std::string& name,
                  const std::filesystem::path& target, const std::string& description);

/// True when the folder has no shortcut of this name any more.
bool RemoveShortcut(const std::filesystem::path& folder, const std::string& name);

} // namespace platform
