#include "zep/SysInfo.h"

#include "platform/Folders.h"
#include "platform/Registry.h"
#include "zep/Text.h"

#include <atomic>

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
    // A folder that cannot be made shows when its files are opened; there the reason can be told.
    if (mode == HomePath::Created)
        platform::MakeFolders(folder);
    return folder;
}
