#include "platform/Folders.h"
#include "platform/Environment.h"

namespace platform {

namespace fs = std::filesystem;

std::optional<fs::path> GivenHome() {
    const std::optional<std::string> home = EnvironmentVariable("BREN_HOME");
    return home ? std::optional(fs::absolute(PathFromUtf8(*home)).lexically_normal()) : std::nullopt;
}

fs::path OwnFolder(const fs::path& systems, const char* what) {
    if (!systems.is_absolute())
        throw FolderUnknown(std::string("The system does not tell the folder for ") + what + '.');
    return systems / "brenvia";
}

} // namespace platform
