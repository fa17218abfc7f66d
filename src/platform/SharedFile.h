#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

namespace platform {

/// Adds the octets in one write behind all that other processes have added, making the file when missing.
/// The file's size afterwards; nothing when not all could be written.
std::optional<std::uint64_t> AppendToFile(const std::filesystem::path& path, std::string_view octets);

/// A lock file, held by one owner among all processes until it is destroyed or its process ends.
class FileLock {
public:
    /// Never waits: nothing when another holds it, or when the file cannot be opened.
    static std::optional<FileLock> TryAcquire(const std::filesystem::path& path);

    FileLock(FileLock&&) noexcept;
    FileLock& operator=(FileLock&&) noexcept;
    ~FileLock();

private:
    struct State;
    explicit FileLock(std::unique_ptr<State> state);
    std::unique_ptr<State> m_state;
};

} // namespace platform
