#include "platform/ServiceControl.h"
#include "platform/Environment.h"
#include "platform/Folders.h"
#include "platform/posix/LockedFile.h"
#include "platform/posix/Process.h"
#include "platform/posix/Systemd.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <sstream>
#include <string_view>
#include <system_error>

namespace platform {
namespace {

namespace fs = std::filesystem;

constexpr size_t LongestCommand = size_t{1} << 16; ///< octets

struct StateWord {
    ServiceState state;
    std::string_view word;
};

constexpr std::array StateWords = {
    StateWord{ServiceState::Running, "running"},
    StateWord{ServiceState::StartPending, "start-pending"},
    StateWord{ServiceState::StopPending, "stop-pending"},
    StateWord{ServiceState::Paused, "paused"},
};

fs::path LockPath(const fs::path& folder, const std::string& name) {
    return folder / (name + ".lock");
}

fs::path StartPath(const fs::path& folder, const std::string& name) {
    return folder / (name + ".start");
}

/// A name that cannot lead out of the folder.
bool IsServiceName(const std::string& name) {
    return !name.empty() && name.find('/') == std::string::npos && name.find('\0') == std::string::npos;
}

/// The state in a held lock file; a holder that says none of the words runs.
ServiceState StateOfHolder(int file) {
    std::array<char, 32> text{};
    const ssize_t count = ::pread(file, text.data(), text.size(), 0);
    const std::string_view said(text.data(), count > 0 ? static_cast<size_t>(count) : 0);
    for (const StateWord& known : StateWords) {
        if (said.substr(0, said.find('\n')) == known.word)
            return known.state;
    }
    return ServiceState::Running;
}

ServiceQuery QueryLock(const fs::path& folder, const std::string& name) {
    const FileDescriptor file(::open(LockPath(folder, name).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file) {
        const bool held = IsFileLocked(file.Get());
        return {ServiceQueryStep::Done, 0, held ? StateOfHolder(file.Get()) : ServiceState::Stopped};
    }
    const int error = errno;
    if (error != ENOENT)
        return {ServiceQueryStep::OpenService, error, ServiceState::Unknown};
    if (::access(StartPath(folder, name).c_str(), F_OK) == 0)
        return {ServiceQueryStep::Done, 0, ServiceState::Stopped};
    return {ServiceQueryStep::OpenService, ENOENT, ServiceState::Unknown};
}

/// The user for whom a program has been started with raised rights.
std::optional<uid_t> InvokingUser() {
    for (const char* variable : {"PKEXEC_UID", "SUDO_UID"}) {
        const std::string text = EnvironmentVariable(variable).value_or("");
        uid_t user = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), user);
        if (!text.empty() && error == std::errc() && end == text.data() + text.size())
            return user;
    }
    return {};
}

/// Whether nobody but those whose commands this process may run can have written the file.
bool IsTrusted(const FileDescriptor& file) {
    struct stat found = {};
    if (::fstat(file.Get(), &found) != 0 || found.st_nlink != 1 || found.st_mode & (S_IWGRP | S_IWOTH))
        return false;
    // With a data folder of their own, whoever raised our rights has chosen the whole world that we act in.
    return found.st_uid == 0 || found.st_uid == ::geteuid() ||
           (GivenHome() && found.st_uid == InvokingUser());
}

std::vector<std::string> ReadCommand(const FileDescriptor& file) {
    std::vector<std::string> command;
    std::istringstream lines(ReadAll(file.Get(), LongestCommand));
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty())
            command.push_back(line);
    }
    return command;
}

ServiceStart StartByCommand(const fs::path& path) {
    const auto refused = [&path](const std::string& why) {
        return ServiceStart{false, "The start command " + path.string() + ' ' + why + '.'};
    };
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
    if (!file)
        return refused("cannot be read: " + std::generic_category().message(errno));
    if (!IsTrusted(file))
        return refused("is not run, because another user can have written it");
    const std::vector<std::string> command = ReadCommand(file);
    pid_t process = 0;
    if (command.empty() || !command.front().starts_with('/'))
        return refused("names no program by its whole path");
    if (const int error = Spawn(command, {.keepsErrors = false, .ownSession = true}, process))
        return refused("cannot be run: " + std::generic_category().message(error));
    ReapLater(process);
    return {true, {}};
}

} // namespace

ServiceQuery QueryService(const std::string& name, bool serverMode, const std::stop_token& stop) {
    if (!IsServiceName(name))
        return {ServiceQueryStep::OpenService, EINVAL, ServiceState::Unknown};
    if (SystemdRules()) {
        if (const auto query = QuerySystemd(name, stop))
            return *query;
    }
    return QueryLock(DataFolder(serverMode), name);
}

ServiceStart StartService(const std::string& name, bool serverMode, const std::stop_token& stop) {
    if (!IsServiceName(name))
        return {false, '"' + name + "\" is no name of a service."};
    if (SystemdRules() && QuerySystemd(name, stop))
        return {StartBySystemd(name, stop), "systemd did not start it."};
    const fs::path folder = DataFolder(serverMode);
    const ServiceQuery query = QueryLock(folder, name);
    if (query.failedAt != ServiceQueryStep::Done || query.state == ServiceState::Stopped)
        return StartByCommand(StartPath(folder, name));
    return {query.state != ServiceState::StopPending, "It is still stopping."};
}

struct ServiceLock::State {
    FileDescriptor file;
};

ServiceLock::ServiceLock(std::unique_ptr<State> state) : m_state(std::move(state)) {}
ServiceLock::ServiceLock(ServiceLock&&) noexcept = default;
ServiceLock& ServiceLock::operator=(ServiceLock&&) noexcept = default;
ServiceLock::~ServiceLock() = default;

std::optional<ServiceLock> ServiceLock::Take(const fs::path& folder, const std::string& name) {
    if (!IsServiceName(name))
        return {};
    MakeFolders(folder);
    std::optional<FileDescriptor> file = LockFile(LockPath(folder, name));
    if (!file)
        return {};
    ServiceLock lock(std::make_unique<State>(State{std::move(*file)}));
    lock.SetState(ServiceState::Running);
    return lock;
}

void ServiceLock::SetState(ServiceState state) {
    for (const StateWord& known : StateWords) {
        if (known.state != state)
            continue;
        const std::string text = std::string(known.word) + '\n';
        const ssize_t written = ::pwrite(m_state->file.Get(), text.data(), text.size(), 0);
        if (written > 0 && ::ftruncate(m_state->file.Get(), written) != 0)
            return;
    }
}

} // namespace platform
