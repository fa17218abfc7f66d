#include "platform/Folders.h"
#include "platform/ServiceControl.h"

#include <fstream>

namespace platform {

bool WriteStartCommand(const std::filesystem::path& folder, const std::string& name,
                       const std::vector<std::string>& command) {
    std::string text;
    for (const std::string& argument : command) {
        if (argument.find('\n') != std::string::npos)
            return false;
        text += argument + '\n';
    }
    const std::filesystem::path path = folder / PathFromUtf8(name + ".start");
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << text;
    std::error_code error;
    using std::filesystem::perms;
    std::filesystem::permissions(
        path, perms::owner_read | perms::owner_write | perms::group_read | perms::others_read, error);
    return file.flush() && !error;
}

} // namespace platform
