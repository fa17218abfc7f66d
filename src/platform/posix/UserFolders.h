#pragma once

#include <filesystem>

namespace platform {

/// The user's home folder; empty when the system tells none.
std::filesystem::path UserHome();

/// `$XDG_CONFIG_HOME/brenvia` or its customary place; empty without a home.
std::filesystem::path UserConfigFolder();

/// What lives until the system restarts: `$XDG_RUNTIME_DIR/brenvia`, or a folder of this user's own below
/// the temporary folder. Made when missing; empty when another user has taken its place.
std::filesystem::path UserRuntimeFolder();

} // namespace platform
