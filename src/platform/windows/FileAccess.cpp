#include "platform/FileAccess.h"
#include "platform/windows/Handle.h"

namespace platform {

FileAccess ProbeReading(const std::filesystem::path& path) {
    const Handle file(::CreateFileW(path.c_str(), GENERIC_READ, ShareAll, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file)
        return FileAccess::Readable;
    const DWORD error = ::GetLastError();
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY)
        return FileAccess::Broken;
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return FileAccess::Missing;
    case ERROR_ACCESS_DENIED:
        return FileAccess::Denied;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return FileAccess::Locked;
    default:
        return FileAccess::Broken;
    }
}

} // namespace platform
