#include "platform/FileAccess.h"
#include "platform/windows/Handle.h"

namespace platform {
namespace {

DWORD AccessMask(FileRight right) {
    switch (right) {
    case FileRight::Read:
        return GENERIC_READ;
    case FileRight::Write:
        return GENERIC_WRITE;
    case FileRight::MakeFilesIn:
        break;
    }
    return FILE_ADD_FILE;
}

FileAccess AccessOf(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        return FileAccess::Missing;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
        return FileAccess::Denied;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return FileAccess::Locked;
    default:
        return FileAccess::Broken;
    }
}

} // namespace

FileAccess ProbeAccess(const std::filesystem::path& path, FileRight right) {
    const bool wantsFolder = right == FileRight::MakeFilesIn;
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY;
    if (attributes != INVALID_FILE_ATTRIBUTES && isFolder != wantsFolder)
        return FileAccess::Broken;
    const Handle opened(::CreateFileW(path.c_str(), AccessMask(right), ShareAll, nullptr, OPEN_EXISTING,
                                      wantsFolder ? FILE_FLAG_BACKUP_SEMANTICS : FILE_ATTRIBUTE_NORMAL,
                                      nullptr));
    return opened ? FileAccess::Granted : AccessOf(::GetLastError());
}

} // namespace platform
