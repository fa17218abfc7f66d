#include "platform/posix/LockedFile.h"
#include "platform/posix/UserFiles.h"

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
    FileDescriptor file = OpenOrMakeFile(path, O_RDWR);
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
