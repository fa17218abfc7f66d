#pragma once

#include "platform/posix/FileDescriptor.h"

#include <sys/types.h>

#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace platform {

/// Where a spawned program writes, and whether it outlives this process's terminal.
struct SpawnOptions {
    int output = -1;         ///< its standard output; nowhere when negative
    bool keepsErrors = true; ///< whether it writes to this process's standard error
    bool ownSession = false;
};

/// Starts a program, found by `$PATH` when its name has no slash. 0, or the system's error when there is
/// nothing to execute. The caller waits for `process`, or leaves that to ReapLater.
int Spawn(const std::vector<std::string>& command, const SpawnOptions& options, pid_t& process);

/// Waits for the end of a process; its exit code, 128 and the signal when that ended it.
int Reap(pid_t process);

/// Waits for the end of a process in the background, so that it does not stay as a zombie.
void ReapLater(pid_t process);

/// What a program prints, and how it ends. It is killed when the token says stop.
struct Printed {
    int exitCode = 127;
    std::string text;
};
Printed RunAndRead(const std::vector<std::string>& command, const std::stop_token& stop = {});

/// The file that `$PATH` names for a program.
std::optional<std::string> FindProgram(const std::string& name);

/// A pipe's two ends, closed on exec.
struct Pipe {
    FileDescriptor read;
    FileDescriptor write;
};
std::optional<Pipe> MakePipe();

/// All that comes until the other end is closed, at most `limit` octets.
std::string ReadAll(int descriptor, size_t limit);

} // namespace platform
