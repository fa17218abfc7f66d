#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

namespace platform {

/// A file mapped for reading, which another process may write, cut short or replace meanwhile.
class MappedFile {
public:
    static std::optional<MappedFile> Open(const std::filesystem::path& path);

    MappedFile(MappedFile&&) noexcept;
    MappedFile& operator=(MappedFile&&) noexcept;
    ~MappedFile();

    /// The octets of the size at opening. Read words through std::atomic_ref or volatile, and believe
    /// nothing twice. Touching octets that another process has cut off since ends the process on some
    /// systems: only for files that are known not to shrink; Read has no such trap.
    std::span<const std::byte> Bytes() const;

    /// Copies the octets at `offset`; false, with `to` undefined, when the file does not hold them all now.
    bool Read(uint64_t offset, std::span<std::byte> to) const;

    /// Whether `path` now names another file than the one mapped, or one of another size.
    bool IsReplaced() const;

private:
    struct State;
    explicit MappedFile(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

} // namespace platform
