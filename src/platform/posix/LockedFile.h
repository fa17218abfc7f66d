#pragma once

#include "platform/posix/FileDescriptor.h"

#include <filesystem>
#include <optional>

namespace platform {

/// Locks the whole file for as long as the descriptor lives, also against this process's other
/// descriptors; the file is made when missing. None, with errno, when another holds the lock.
std::optional<FileDescriptor> LockFile(const std::filesystem::path& path);

/// Whether somebody holds the lock of the file. Takes no lock itself, so it never is in a holder's way.
bool IsFileLocked(int descriptor);

} // namespace platform
