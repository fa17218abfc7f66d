#include "platform/Elevation.h"
#include "platform/Folders.h"
#include "platform/posix/Process.h"

#include <array>
#include <string_view>

extern char** environ; // NOLINT(readability-redundant-declaration): not every system declares it

namespace platform {
namespace {

bool IsCarried(std::string_view variable) {
    static constexpr std::array<std::string_view, 5> starts = {
        "DISPLAY=", "WAYLAND_DISPLAY=", "XAUTHORITY=", "HOME=", "XDG_"};
    for (const std::string_view start : starts) {
        if (variable.starts_with(start))
            return true;
    }
    return false;
}

/// Tells on standard output that it has come to run, and becomes the program.
constexpr const char* Announce = R"([ -x "$1" ] && echo && exec "$@" >&2)";

} // namespace

bool MayElevate() {
    return FindProgram("pkexec").has_value();
}

bool RelaunchElevated(const std::filesystem::path& executable, const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {"pkexec", "env"};
    for (char** variable = environ; *variable; ++variable) {
        if (IsCarried(*variable))
            command.emplace_back(*variable);
    }
    if (const auto home = GivenHome()) // the program starts in another folder
        command.push_back("BREN_HOME=" + home->string());
    command.insert(command.end(), {"sh", "-c", Announce, "sh", executable.string()});
    command.insert(command.end(), arguments.begin(), arguments.end());

    std::optional<Pipe> pipe = MakePipe();
    pid_t process = 0;
    if (!pipe || Spawn(command, {.output = pipe->write.Get()}, process) != 0)
        return false;
    pipe->write.Close();
    const bool runs = !ReadAll(pipe->read.Get(), 1).empty();
    if (runs)
        ReapLater(process);
    else
        Reap(process);
    return runs;
}

} // namespace platform
