#include "devservice/Settings.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace devservice {

namespace fs = std::filesystem;

namespace {

/// Escapes what would break a line of tab-separated fields.
std::string Escape(const std::string& text) {
    std::string result;
    for (const char c : text) {
        char escaped[4];
        std::snprintf(escaped, sizeof escaped, "%%%02X", static_cast<unsigned char>(c));
        const bool plain = static_cast<unsigned char>(c) >= ' ' && c != '%';
        result += plain ? std::string(1, c) : escaped;
    }
    return result;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

} // namespace

std::string PercentDecode(std::string_view text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool escape =
            text[i] == '%' && i + 2 < text.size() && HexDigit(text[i + 1]) >= 0 && HexDigit(text[i + 2]) >= 0;
        result += escape ? static_cast<char>(HexDigit(text[i + 1]) * 16 + HexDigit(text[i + 2])) : text[i];
        i += escape ? 2 : 0;
    }
    return result;
}

Settings::Settings(fs::path file) : m_file(std::move(file)) {}

void Settings::Load() {
    m_entries.clear();
    std::ifstream in(m_file, std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        const size_t first = line.find('\t');
        const size_t second = line.find('\t', first + 1);
        if (first == std::string::npos || second == std::string::npos)
            continue;
        m_entries[PercentDecode(line.substr(0, first))] = {line.substr(first + 1, second - first - 1),
                                                           PercentDecode(line.substr(second + 1))};
    }
}

std::optional<std::string> Settings::Get(const std::string& name) const {
    const auto found = m_entries.find(name);
    return found == m_entries.end() ? std::nullopt : std::optional(found->second.value);
}

void Settings::Set(const std::string& name, const std::string& type, const std::string& value) {
    m_entries[name] = {type, value};
    Save();
}

void Settings::Save() const {
    fs::create_directories(m_file.parent_path());
    fs::path next = m_file;
    next += ".new";
    std::ofstream out(next, std::ios::binary);
    fs::permissions(next, fs::perms::owner_read | fs::perms::owner_write);
    for (const auto& [name, entry] : m_entries)
        out << Escape(name) << '\t' << Escape(entry.type) << '\t' << Escape(entry.value) << '\n';
    if (!out.flush())
        throw std::runtime_error("the settings cannot be written");
    out.close();
    fs::rename(next, m_file);
}

} // namespace devservice
