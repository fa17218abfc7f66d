#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// Sets an environment variable, or takes it away, for as long as it lives.
class VariableSet {
public:
    VariableSet(std::string name, const std::optional<std::string>& value);
    VariableSet(const VariableSet&) = delete;
    VariableSet& operator=(const VariableSet&) = delete;
    ~VariableSet();

private:
    std::string m_name;
    std::optional<std::string> m_before;
};

/// An empty folder that goes with its object.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    const std::filesystem::path& Path() const { return m_path; }
    std::string Text() const { return m_path.string(); }

private:
    std::filesystem::path m_path;
};

/// A world of its own below a temporary folder: data, machine values, user values, what ends with the system.
class TemporaryHome {
public:
    const std::filesystem::path& Path() const { return m_folder.Path(); }

private:
    TemporaryFolder m_folder;
    VariableSet m_home{"BREN_HOME", m_folder.Text()};
    VariableSet m_config{"XDG_CONFIG_HOME", (m_folder.Path() / "config").string()};
    VariableSet m_data{"XDG_DATA_HOME", (m_folder.Path() / "share").string()};
    VariableSet m_runtime{"XDG_RUNTIME_DIR", m_folder.Text()};
};

void WriteFile(const std::filesystem::path& path, const std::string& octets);
std::string ReadFile(const std::filesystem::path& path);

/// Looks again and again until `condition` holds; false when it does not within ten seconds.
bool ComesTrue(const std::function<bool()>& condition);
