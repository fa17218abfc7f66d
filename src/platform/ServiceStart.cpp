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
    std::ofstream file(folder / PathFromUtf8(name + ".start"), std::ios::binary | std::ios::trunc);
    file << text;
    return static_cast<bool>(file.flush());
}

} // namespace platform
