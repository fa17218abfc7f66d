#include "platform/Registry.h"

#include "platform/Environment.h"
#include "platform/Folders.h"
#include "platform/posix/Process.h"
#include "platform/posix/UserFiles.h"
#include "platform/posix/UserFolders.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <vector>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr size_t LongestKey = size_t{1} << 20; ///< octets of its file

enum class Life { Lasting, UntilRestart };

fs::path RootFolder(RegistryRoot root, Life life) {
    const bool lasting = life == Life::Lasting;
    if (root == RegistryRoot::CurrentUser)
        return lasting ? UserConfigFolder() : UserRuntimeFolder();
    if (const auto home = GivenHome())
        return *home / (lasting ? "etc" : "run");
    return lasting ? "/etc/brenvia" : "/run/brenvia";
}

/// The key's file below its root; empty when the key names no place below it.
fs::path RelativeFile(const std::string& key) {
    fs::path file;
    std::istringstream parts(key);
    for (std::string part; std::getline(parts, part, '\\');) {
        if (part.empty() || part == "." || part == ".." ||
            part.find_first_of(std::string("/\0", 2)) != std::string::npos)
            return {};
        file /= part;
    }
    return file.empty() ? file : file += ".ini";
}

fs::path KeyFile(const RegistryKey& key, Life life) {
    const fs::path root = RootFolder(key.root, life);
    const fs::path file = RelativeFile(key.path);
    return root.empty() || file.empty() ? fs::path() : root / file;
}

/// The file that stands for the key: the lasting one where there is one.
fs::path PresentFile(const RegistryKey& key) {
    fs::path lasting = KeyFile(key, Life::Lasting);
    std::error_code error;
    return fs::exists(lasting, error) ? lasting : KeyFile(key, Life::UntilRestart);
}

std::string_view Trimmed(std::string_view text) {
    static constexpr std::string_view blanks = " \t\r";
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

char Lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool SameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return Lowered(x) == Lowered(y); });
}

/// What follows the equals sign of a line that holds the value of this name.
std::optional<std::string_view> ValueOnLine(std::string_view line, const std::string& name) {
    const std::string_view text = Trimmed(line);
    const size_t equals = text.find('=');
    if (equals == std::string_view::npos || text.find_first_of(";#[") == 0 ||
        !SameName(Trimmed(text.substr(0, equals)), name))
        return {};
    return Trimmed(text.substr(equals + 1));
}

std::vector<std::string> ReadLines(const fs::path& path) {
    std::vector<std::string> lines;
    const FileDescriptor file = OpenFile(path);
    std::istringstream text(file ? ReadAll(file.Get(), LongestKey) : std::string());
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    return lines;
}

std::optional<std::string> ReadValue(const RegistryKey& key, const std::string& name) {
    for (const std::string& line : ReadLines(PresentFile(key))) {
        if (const auto value = ValueOnLine(line, name))
            return std::string(*value);
    }
    return {};
}

std::optional<uint32_t> AsDword(std::string_view value) {
    const bool hexadecimal = value.starts_with("0x") || value.starts_with("0X");
    if (hexadecimal)
        value.remove_prefix(2);
    uint32_t number = 0;
    const char* const end = value.data() + value.size();
    const auto [rest, error] = std::from_chars(value.data(), end, number, hexadecimal ? 16 : 10);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

/// The text with the variables in it replaced; what names none stands as it is.
std::string Expanded(std::string_view text) {
    std::string expanded;
    for (size_t start; (start = text.find("${")) != std::string_view::npos;) {
        const size_t end = text.find('}', start);
        if (end == std::string_view::npos)
            break;
        const auto value = EnvironmentVariable(std::string(text.substr(start + 2, end - start - 2)));
        expanded.append(text.substr(0, start)).append(value ? *value : text.substr(start, end + 1 - start));
        text.remove_prefix(end + 1);
    }
    return expanded.append(text);
}

bool IsNameOfValue(const std::string& name) {
    return !name.empty() && Trimmed(name) == name &&
           name.find_first_of(std::string("=\n\0", 3)) == std::string::npos && name.find_first_of(";#[") != 0;
}

/// Keeps other writers of the folder's files waiting while it lives.
FileDescriptor LockFolder(const fs::path& path) {
    const FileDescriptor folder = OpenOrMakeFolder(path);
    FileDescriptor descriptor(folder ? ::openat(folder.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC) : -1);
    if (descriptor && ::flock(descriptor.Get(), LOCK_EX) != 0)
        descriptor.Close();
    return descriptor;
}

/// The lines with the value in place of those that held one of its name, or behind them all.
std::string WithValue(const std::vector<std::string>& lines, const std::string& name, uint32_t value) {
    const std::string fresh = name + '=' + std::to_string(value) + '\n';
    std::string text;
    bool placed = false;
    for (const std::string& line : lines) {
        if (!ValueOnLine(line, name))
            text += line + '\n';
        else if (!std::exchange(placed, true))
            text += fresh;
    }
    return placed ? text : text + fresh;
}

} // namespace

std::optional<uint32_t> ReadRegistryDword(const RegistryKey& key, const std::string& name) {
    const std::optional<std::string> value = ReadValue(key, name);
    return value ? AsDword(*value) : std::nullopt;
}

std::optional<std::string> ReadRegistryText(const RegistryKey& key, const std::string& name,
                                            size_t maxUnits) {
    const std::optional<std::string> value = ReadValue(key, name);
    if (!value || AsDword(*value))
        return {};
    const bool quoted = value->size() >= 2 && value->front() == '"' && value->back() == '"';
    std::string text = quoted ? value->substr(1, value->size() - 2) : *value;
    if (text.size() + 1 > maxUnits)
        return {};
    text.resize(std::min(text.size(), text.find('\0')));
    return quoted ? text : Expanded(text);
}

bool WriteRegistryDword(const RegistryKey& key, const std::string& name, uint32_t value) {
    const fs::path path = PresentFile(key);
    if (path.empty() || !IsNameOfValue(name))
        return false;
    const FileDescriptor lock = LockFolder(path.parent_path());
    return lock && ReplaceFile(path, WithValue(ReadLines(path), name, value));
}

} // namespace platform
