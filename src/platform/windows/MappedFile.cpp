#include "platform/MappedFile.h"
#include "platform/windows/Handle.h"

#include <cstring>

namespace platform {
namespace {

Handle OpenFile(const std::filesystem::path& path, DWORD rights) {
    return FileHandle(::CreateFileW(path.c_str(), rights, ShareAll, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
}

uint64_t SizeOf(const BY_HANDLE_FILE_INFORMATION& file) {
    return uint64_t{file.nFileSizeHigh} << 32 | file.nFileSizeLow;
}

} // namespace

struct MappedFile::State {
    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        if (address)
            ::UnmapViewOfFile(address);
    }

    std::filesystem::path path;
    Handle file;
    Handle mapping;
    BY_HANDLE_FILE_INFORMATION identity = {};
    const void* address = nullptr;
    size_t size = 0;
};

MappedFile::MappedFile(std::unique_ptr<State> state) : m_state(std::move(state)) {}
MappedFile::MappedFile(MappedFile&&) noexcept = default;
MappedFile& MappedFile::operator=(MappedFile&&) noexcept = default;
MappedFile::~MappedFile() = default;

std::optional<MappedFile> MappedFile::Open(const std::filesystem::path& path) {
    auto state = std::make_unique<State>();
    state->path = path;
    state->file = OpenFile(path, GENERIC_READ);
    if (!state->file || !::GetFileInformationByHandle(state->file.Get(), &state->identity))
        return {};
    state->size = static_cast<size_t>(SizeOf(state->identity));
    if (state->size > 0) {
        state->mapping =
            Handle(::CreateFileMappingW(state->file.Get(), nullptr, PAGE_READONLY, 0, 0, nullptr));
        if (!state->mapping)
            return {};
        state->address = ::MapViewOfFile(state->mapping.Get(), FILE_MAP_READ, 0, 0, state->size);
        if (!state->address)
            return {};
    }
    return MappedFile(std::move(state));
}

std::span<const std::byte> MappedFile::Bytes() const {
    return {static_cast<const std::byte*>(m_state->address), m_state->size};
}

bool MappedFile::Read(uint64_t offset, std::span<std::byte> to) const {
    if (offset > m_state->size || to.size() > m_state->size - offset)
        return false;
    // The system lets nobody cut off what is mapped.
    if (!to.empty())
        std::memcpy(to.data(), Bytes().data() + offset, to.size());
    return true;
}

bool MappedFile::IsReplaced() const {
    BY_HANDLE_FILE_INFORMATION now = {};
    const Handle file = OpenFile(m_state->path, FILE_READ_ATTRIBUTES);
    if (!file || !::GetFileInformationByHandle(file.Get(), &now))
        return true;
    const BY_HANDLE_FILE_INFORMATION& then = m_state->identity;
    return now.dwVolumeSerialNumber != then.dwVolumeSerialNumber ||
           now.nFileIndexHigh != then.nFileIndexHigh || now.nFileIndexLow != then.nFileIndexLow ||
           SizeOf(now) != SizeOf(then);
}

} // namespace platform
