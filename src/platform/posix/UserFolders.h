#pragma once

#include <filesystem>

namespace platform {

/// The user's home folder.
std::filesystem::path UserHome();

/// `$XDG_CONFIG_HOME/brenvia` or its customary place.
std::filesystem::path UserConfigFolder();

/// What lives until the system restarts: `$XDG_RUNTIME_DIR/brenvia`, or a folder of this user's own below
/// the temporary folder. Made when missing; empty when another user has taken its place.
std::filesystem::path UserRuntimeFolder();

/// Makes a folder and those above it that are missing. Each belongs to the owner of the one it stands in,
/// so that an elevated console leaves nothing behind that its user cannot write.
bool MakeFolders(const std::filesystem::path& folder);

} // namespace platform
