#include "Surroundings.h"
#include "platform/Environment.h"

#include <fstream>
#include <iterator>
#include <random>
#include <thread>

namespace fs = std::filesystem;

VariableSet::VariableSet(std::string name, const std::optional<std::string>& value)
    : m_name(std::move(name)), m_before(platform::EnvironmentVariable(m_name)) {
    platform::PutEnvironmentVariable(m_name, value);
}

VariableSet::~VariableSet() {
    platform::PutEnvironmentVariable(m_name, m_before);
}

TemporaryFolder::TemporaryFolder() {
    std::random_device random;
    do
        m_path = fs::temp_directory_path() / ("brenvia-test-" + std::to_string(random()));
    while (!fs::create_directory(m_path));
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code error;
    fs::remove_all(m_path, error);
}

void WriteFile(const fs::path& path, const std::string& octets) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << octets;
}

std::string ReadFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool ComesTrue(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}
