#include "platform/DriveFolder.h"
#include "platform/Folders.h"

namespace platform {

std::string DriveFolder(char16_t, const std::filesystem::path& home, const std::string& name) {
    return Utf8FromPath(home / PathFromUtf8(name));
}

} // namespace platform
