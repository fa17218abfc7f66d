#include "platform/SharedFile.h"
#include "platform/posix/LockedFile.h"
#include "platform/posix/UserFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace platform {

std::optional<std::uint64_t> AppendToFile(const std::filesystem::path& path, std::string_view octets) {
    const FileDescriptor file = OpenOrMakeFile(path, O_WRONLY | O_APPEND);
    if (!file)
        return {};
    ssize_t written = 0;
    do
        written = ::write(file.Get(), octets.data(), octets.size());
    while (written < 0 && errno == EINTR);
    struct stat status = {};
    if (written != static_cast<ssize_t>(octets.size()) || ::fstat(file.Get(), &status) != 0)
        return {};
    return static_cast<std::uint64_t>(status.st_size);
}

struct FileLock::State {
    FileDescriptor file;
};

std::optional<FileLock> FileLock::TryAcquire(const std::filesystem::path& path) {
    auto file = LockFile(path);
    if (!file)
        return {};
    return FileLock(std::make_unique<State>(State{std::move(*file)}));
}

FileLock::FileLock(std::unique_ptr<State> state) : m_state(std::move(state)) {}
FileLock::FileLock(FileLock&&) noexcept = default;
FileLock& FileLock::operator=(FileLock&&) noexcept = default;
FileLock::~FileLock() = default;

} // namespace platform
