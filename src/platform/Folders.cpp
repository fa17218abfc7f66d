#include "platform/Folders.h"
#include "platform/Environment.h"

namespace platform {

namespace fs = std::filesystem;

std::optional<fs::path> GivenHome() {
    const std::optional<std::string> given = EnvironmentVariable("BREN_HOME");
    if (!given)
        return {};
    const fs::path home = PathFromUtf8(*given);
    std::error_code error;
    const fs::path absolute = fs::absolute(home, error).lexically_normal();
    return error ? home : absolute;
}

fs::path OwnFolder(const fs::path& systems, const char* what) {
    if (!systems.is_absolute())
        throw FolderUnknown(std::string("The system does not tell the folder for ") + what + '.');
    return systems / "brenvia";
}

} // namespace platform
