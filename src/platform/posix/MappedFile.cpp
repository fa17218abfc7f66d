#include "platform/MappedFile.h"
#include "platform/posix/FileDescriptor.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

namespace platform {

struct MappedFile::State {
    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        if (address)
            ::munmap(address, size);
    }

    std::filesystem::path path;
    FileDescriptor file;
    struct stat identity = {};
    void* address = nullptr;
    size_t size = 0;
};

MappedFile::MappedFile(std::unique_ptr<State> state) : m_state(std::move(state)) {}
MappedFile::MappedFile(MappedFile&&) noexcept = default;
MappedFile& MappedFile::operator=(MappedFile&&) noexcept = default;
MappedFile::~MappedFile() = default;

std::optional<MappedFile> MappedFile::Open(const std::filesystem::path& path) {
    auto state = std::make_unique<State>();
    state->path = path;
    state->file = FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!state->file || ::fstat(state->file.Get(), &state->identity) != 0 ||
        !S_ISREG(state->identity.st_mode))
        return {};
    state->size = static_cast<size_t>(state->identity.st_size);
    if (state->size > 0) {
        void* const address = ::mmap(nullptr, state->size, PROT_READ, MAP_SHARED, state->file.Get(), 0);
        if (address == MAP_FAILED)
            return {};
        state->address = address;
    }
    return MappedFile(std::move(state));
}

std::span<const std::byte> MappedFile::Bytes() const {
    return {static_cast<const std::byte*>(m_state->address), m_state->size};
}

bool MappedFile::Read(uint64_t offset, std::span<std::byte> to) const {
    if (offset > m_state->size || to.size() > m_state->size - offset)
        return false;
    const ssize_t count = ::pread(m_state->file.Get(), to.data(), to.size(), static_cast<off_t>(offset));
    return count == static_cast<ssize_t>(to.size());
}

bool MappedFile::IsReplaced() const {
    struct stat now = {};
    if (::stat(m_state->path.c_str(), &now) != 0)
        return true;
    const struct stat& then = m_state->identity;
    return now.st_dev != then.st_dev || now.st_ino != then.st_ino || now.st_size != then.st_size;
}

} // namespace platform
