#include "platform/FileAccess.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace platform {
namespace {

int ModeOf(FileRight right) {
    switch (right) {
    case FileRight::Read:
        return R_OK;
    case FileRight::Write:
        return W_OK;
    case FileRight::MakeFilesIn:
        break;
    }
    return W_OK | X_OK;
}

FileAccess AccessOf(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return FileAccess::Missing;
    case EACCES:
    case EPERM:
    case EROFS:
        return FileAccess::Denied;
    default:
        return FileAccess::Broken;
    }
}

} // namespace

/// Asks without opening: closing a file would drop the locks that others of this process hold on it.
FileAccess ProbeAccess(const std::filesystem::path& path, FileRight right) {
    struct stat found = {};
    if (::stat(path.c_str(), &found) != 0)
        return AccessOf(errno);
    if (right == FileRight::MakeFilesIn ? !S_ISDIR(found.st_mode) : !S_ISREG(found.st_mode))
        return FileAccess::Broken;
    const bool granted = ::faccessat(AT_FDCWD, path.c_str(), ModeOf(right), AT_EACCESS) == 0;
    return granted ? FileAccess::Granted : AccessOf(errno);
}

} // namespace platform
