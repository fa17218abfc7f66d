#include "platform/SharedFile.h"
#include "platform/windows/Handle.h"

#include <limits>
#include <utility>

namespace platform {

namespace {

Handle OpenOrMake(const std::filesystem::path& path, DWORD rights) {
    return FileHandle(
        ::CreateFileW(path.c_str(), rights, ShareAll, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

} // namespace

std::optional<std::uint64_t> AppendToFile(const std::filesystem::path& path, std::string_view octets) {
    // The right to append without FILE_WRITE_DATA makes the system place each write at the end. That is one
    // step on a local disk, but not everywhere: hence a lock, on an octet that no file reaches.
    const Handle file = OpenOrMake(path, FILE_READ_DATA | FILE_APPEND_DATA | FILE_READ_ATTRIBUTES);
    OVERLAPPED turn{};
    turn.OffsetHigh = std::numeric_limits<LONG>::max();
    if (!file || octets.size() > MAXDWORD ||
        !::LockFileEx(file.Get(), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &turn))
        return std::nullopt;
    DWORD written = 0;
    LARGE_INTEGER size{};
    const bool whole =
        ::WriteFile(file.Get(), octets.data(), static_cast<DWORD>(octets.size()), &written, nullptr) &&
        written == octets.size() && ::GetFileSizeEx(file.Get(), &size);
    ::UnlockFileEx(file.Get(), 0, 1, 0, &turn);
    if (!whole)
        return std::nullopt;
    return static_cast<std::uint64_t>(size.QuadPart);
}

struct FileLock::State {
    Handle file;
};

std::optional<FileLock> FileLock::TryAcquire(const std::filesystem::path& path) {
    auto state = std::make_unique<State>(State{OpenOrMake(path, GENERIC_READ | GENERIC_WRITE)});
    OVERLAPPED place{};
    if (!state->file || !::LockFileEx(state->file.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY,
                                      0, 1, 0, &place))
        return std::nullopt;
    return FileLock(std::move(state));
}

FileLock::FileLock(std::unique_ptr<State> state) : m_state(std::move(state)) {}
FileLock::FileLock(FileLock&&) noexcept = default;
FileLock& FileLock::operator=(FileLock&&) noexcept = default;
FileLock::~FileLock() = default;

} // namespace platform
