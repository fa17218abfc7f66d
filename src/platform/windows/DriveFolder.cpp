#include "platform/DriveFolder.h"
#include "platform/Folders.h"

namespace platform {

std::string DriveFolder(char16_t letter, const std::filesystem::path&, const std::string& name) {
    return Utf8FromPath(std::filesystem::path(std::u16string(1, letter))) + ":\\" + name;
}

} // namespace platform
