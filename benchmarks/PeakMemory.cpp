#include "benchmarks/BenchTable.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace {

double ResidentMiB() {
    long pages = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

double PeakMiB() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

[[noreturn]] void RunChild(int result, const std::function<void()>& work) {
    const double before = ResidentMiB();
    work();
    const double needed = PeakMiB() - before;
    _exit(write(result, &needed, sizeof needed) == sizeof needed ? 0 : 1);
}

} // namespace

double PeakMemoryOf(const std::function<void()>& work) {
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    const pid_t child = fork();
    if (child == 0)
        RunChild(ends[1], work);
    close(ends[1]);
    double needed = 0;
    const bool told = read(ends[0], &needed, sizeof needed) == sizeof needed;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    if (!told)
        throw std::runtime_error("the measured child ended early");
    return needed;
}
