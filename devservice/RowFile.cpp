#include "devservice/RowFile.h"

#include "devservice/WireText.h"
#include "platform/Folders.h"

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

} // namespace

std::vector<Row> LoadRows(const fs::path& file) {
    std::vector<Row> rows;
    std::ifstream in(file, std::ios::binary);
    for (std::string line; std::getline(in, line);) {
        Row& row = rows.emplace_back();
        for (size_t begin = 0; begin <= line.size();) {
            const size_t end = std::min(line.find('\t', begin), line.size());
            row.push_back(PercentDecode(line.substr(begin, end - begin)));
            begin = end + 1;
        }
    }
    return rows;
}

void SaveRows(const fs::path& file, const std::vector<Row>& rows) {
    fs::create_directories(file.parent_path());
    fs::path next = file;
    next += ".new";
    std::ofstream out(next, std::ios::binary);
    fs::permissions(next, fs::perms::owner_read | fs::perms::owner_write);
    for (const Row& row : rows) {
        for (size_t i = 0; i < row.size(); ++i)
            out << (i > 0 ? "\t" : "") << Escape(row[i]);
        out << '\n';
    }
    if (!out.flush())
        throw std::runtime_error(platform::Utf8FromPath(file.filename()) + " cannot be written");
    out.close();
    fs::rename(next, file);
}

} // namespace devservice
