#include "zep/SysInfo.h"

#include "platform/Folders.h"
#include "platform/Registry.h"
#include "zep/Text.h"

#include <atomic>
#include <system_error>

namespace {

std::atomic<bool> serverMode = false;

} // namespace

void ZEPSysInfoSetServerMode(bool server) {
    serverMode = server;
}

bool ZEPSysInfoIsServer() {
    return serverMode;
}

bool IsBrQBSMode() {
    const platform::RegistryKey key{platform::RegistryRoot::LocalMachine, "SOFTWARE\\Brenvia"};
    return platform::ReadRegistryDword(key, "BrQBSMode").value_or(1) == 0;
}

std::filesystem::path ZEPGetHomePath(const QString& name, HomePath mode) {
    std::filesystem::path folder = platform::DataFolder(ZEPSysInfoIsServer()) / ToPath(name);
    if (mode == HomePath::Created) {
        // A folder that cannot be made shows when its files are opened; there the reason can be told.
        std::error_code ignored;
        std::filesystem::create_directories(folder, ignored);
    }
    return folder;
}
