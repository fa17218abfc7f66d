#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace devservice {

/// The service's settings by name, kept in a file that only its owner may read. No value is ever logged.
class Settings {
public:
    explicit Settings(std::filesystem::path file);

    void Load();
    std::optional<std::string> Get(const std::string& name) const;
    void Set(const std::string& name, const std::string& type, const std::string& value); ///< written at once
    void Remove(const std::string& name);

private:
    struct Entry {
        std::string type; ///< "1" integer, "2" string, "4" boolean
        std::string value;
    };
    void Save() const;

    std::filesystem::path m_file;
    std::map<std::string, Entry> m_entries;
};

} // namespace devservice
