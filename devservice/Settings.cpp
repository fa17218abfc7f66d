#include "devservice/Settings.h"

#include "devservice/RowFile.h"

namespace devservice {

Settings::Settings(std::filesystem::path file) : m_file(std::move(file)) {}

void Settings::Load() {
    m_entries.clear();
    for (const Row& row : LoadRows(m_file))
        if (row.size() == 3)
            m_entries[row[0]] = {row[1], row[2]};
}

std::optional<std::string> Settings::Get(const std::string& name) const {
    const auto found = m_entries.find(name);
    return found == m_entries.end() ? std::nullopt : std::optional(found->second.value);
}

void Settings::Set(const std::string& name, const std::string& type, const std::string& value) {
    m_entries[name] = {type, value};
    Save();
}

void Settings::Remove(const std::string& name) {
    if (m_entries.erase(name) > 0)
        Save();
}

void Settings::Save() const {
    std::vector<Row> rows;
    rows.reserve(m_entries.size());
    for (const auto& [name, entry] : m_entries)
        rows.push_back({name, entry.type, entry.value});
    SaveRows(m_file, rows);
}

} // namespace devservice
