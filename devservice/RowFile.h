#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace devservice {

using Row = std::vector<std::string>;

/// The rows of a file that SaveRows wrote; none when there is no such file.
std::vector<Row> LoadRows(const std::filesystem::path& file);

/// Writes rows of fields, one a line, in place of what the file held; only its owner may read it. Throws
/// std::runtime_error.
void SaveRows(const std::filesystem::path& file, const std::vector<Row>& rows);

} // namespace devservice
