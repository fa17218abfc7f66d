#include "platform/posix/LockedFile.h"

#include <fcntl.h>

namespace platform {
namespace {

struct flock WholeFile() {
    struct flock range = {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    return range;
}

} // namespace

std::optional<FileDescriptor> LockFile(const std::filesystem::path& path) {
    FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644));
    struct flock range = WholeFile();
    if (!file || ::fcntl(file.Get(), F_OFD_SETLK, &range) != 0)
        return {};
    return file;
}

bool IsFileLocked(int descriptor) {
    struct flock range = WholeFile();
    return ::fcntl(descriptor, F_OFD_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}

} // namespace platform
