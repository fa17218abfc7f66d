#include "benchmarks/IdleShare.h"

#include <QCoreApplication>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

using namespace std::chrono_literals;

namespace {

/// Processor time of a process so far, in seconds.
double CpuSeconds(pid_t process) {
    std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
    std::string word;
    for (int field = 1; field <= 13; ++field)
        stat >> word;
    double user = 0;
    double system = 0;
    stat >> user >> system;
    return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

} // namespace

double IdleShareOf(const std::string& section) {
    qunsetenv("QT_QPA_PLATFORM");
    const std::string program = QCoreApplication::applicationDirPath().toStdString() + "/BTaskMMC";
    const std::string argument = "--dev-section=" + section;
    const pid_t child = fork();
    if (child == 0) {
        execl(program.c_str(), program.c_str(), argument.c_str(), nullptr);
        _exit(127);
    }
    std::this_thread::sleep_for(5s);
    const double before = CpuSeconds(child);
    std::this_thread::sleep_for(60s);
    const double used = CpuSeconds(child) - before;
    int status = 0;
    const bool lived =
        kill(child, SIGTERM) == 0 && waitpid(child, &status, 0) == child && WIFSIGNALED(status);
    if (!lived || before == 0)
        throw std::runtime_error("the console did not run");
    return used / 60 * 100;
}
