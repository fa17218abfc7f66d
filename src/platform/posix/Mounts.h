#pragma once

#include "platform/LocalFolders.h"

namespace platform {

/// Of a table like /proc/self/mounts, each folder once; "/" always is the first.
std::vector<Volume> VolumesOf(const std::filesystem::path& table);

} // namespace platform
