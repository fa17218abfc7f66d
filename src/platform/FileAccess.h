#pragma once

#include <filesystem>

namespace platform {

/// Locked: another process keeps the file from being opened. Broken: anything else that goes wrong, or no
/// file.
enum class FileAccess { Readable, Missing, Denied, Locked, Broken };

/// Whether this user may open the file for reading.
FileAccess ProbeReading(const std::filesystem::path& path);

} // namespace platform
