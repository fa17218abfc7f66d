#include "platform/FileAccess.h"
#include "platform/posix/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace platform {

FileAccess ProbeReading(const std::filesystem::path& path) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file) {
        struct stat found = {};
        const bool isFile = ::fstat(file.Get(), &found) == 0 && !S_ISDIR(found.st_mode);
        return isFile ? FileAccess::Readable : FileAccess::Broken;
    }
    switch (errno) {
    case ENOENT:
    case ENOTDIR:
        return FileAccess::Missing;
    case EACCES:
    case EPERM:
        return FileAccess::Denied;
    case EAGAIN:
    case EBUSY:
        return FileAccess::Locked;
    default:
        return FileAccess::Broken;
    }
}

} // namespace platform
