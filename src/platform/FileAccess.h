#pragma once

#include <filesystem>

namespace platform {

/// What a user may want of a file, or of a folder: to make files in it.
enum class FileRight { Read, Write, MakeFilesIn };

/// Denied: the system refuses the right, or to look so far; a read-only file system denies writing. Locked:
/// another process keeps the file from being opened. Broken: anything else that goes wrong, and what is no
/// file or, for MakeFilesIn, no folder.
enum class FileAccess { Granted, Missing, Denied, Locked, Broken };

/// Whether this user has the right. Changes nothing, waits for nobody, and lets go of no lock that this
/// process holds.
FileAccess ProbeAccess(const std::filesystem::path& path, FileRight right);

} // namespace platform
