#include "platform/posix/Process.h"
#include "platform/Environment.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <sstream>
#include <thread>

extern char** environ; // NOLINT(readability-redundant-declaration): not every system declares it

namespace platform {
namespace {

class SpawnSetup {
public:
    explicit SpawnSetup(const SpawnOptions& options) {
        ::posix_spawnattr_init(&attributes);
        ::posix_spawn_file_actions_init(&actions);
        SetSignals(options);
        ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        if (options.output >= 0)
            ::posix_spawn_file_actions_adddup2(&actions, options.output, STDOUT_FILENO);
        else
            ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        if (!options.keepsErrors)
            ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;
    ~SpawnSetup() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }

    posix_spawnattr_t attributes;
    posix_spawn_file_actions_t actions;

private:
    /// The child starts with the usual signals, whatever this process or thread ignores or blocks.
    void SetSignals(const SpawnOptions& options) {
        sigset_t none;
        sigset_t defaults;
        ::sigemptyset(&none);
        ::sigemptyset(&defaults);
        ::sigaddset(&defaults, SIGPIPE);
        ::sigaddset(&defaults, SIGCHLD);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        ::posix_spawnattr_setsigdefault(&attributes, &defaults);
        const int session = options.ownSession ? POSIX_SPAWN_SETSID : 0;
        ::posix_spawnattr_setflags(
            &attributes, static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | session));
    }
};

} // namespace

int Spawn(const std::vector<std::string>& command, const SpawnOptions& options, pid_t& process) {
    if (command.empty())
        return ENOENT;
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    const SpawnSetup setup(options);
    return ::posix_spawnp(&process, arguments[0], &setup.actions, &setup.attributes, arguments.data(),
                          environ);
}

int Reap(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return 127;
    }
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

void ReapLater(pid_t process) {
    std::thread([process] { Reap(process); }).detach();
}

Printed RunAndRead(const std::vector<std::string>& command, const std::stop_token& stop) {
    std::optional<Pipe> pipe = MakePipe();
    pid_t process = 0;
    if (!pipe ||
        Spawn(command, {.output = pipe->write.Get(), .keepsErrors = false, .ownSession = true}, process) != 0)
        return {};
    pipe->write.Close();
    Printed printed;
    {
        // The program's own children hold the pipe open too, so its whole session ends.
        const std::stop_callback kill(stop, [process] { ::kill(-process, SIGKILL); });
        printed.text = ReadAll(pipe->read.Get(), size_t{1} << 20);
        siginfo_t ended;
        ::waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOWAIT);
    }
    pipe->read.Close();
    printed.exitCode = Reap(process);
    return printed;
}

std::optional<std::string> FindProgram(const std::string& name) {
    std::istringstream folders(EnvironmentVariable("PATH").value_or("/usr/local/bin:/usr/bin:/bin"));
    for (std::string folder; std::getline(folders, folder, ':');) {
        std::string candidate = (folder.empty() ? "." : folder) + '/' + name;
        if (::access(candidate.c_str(), X_OK) == 0)
            return candidate;
    }
    return {};
}

std::optional<Pipe> MakePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return {};
    return Pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

std::string ReadAll(int descriptor, size_t limit) {
    std::string text;
    std::array<char, 4096> chunk{};
    while (text.size() < limit) {
        const ssize_t count = ::read(descriptor, chunk.data(), std::min(chunk.size(), limit - text.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        text.append(chunk.data(), static_cast<size_t>(count));
    }
    return text;
}

} // namespace platform
