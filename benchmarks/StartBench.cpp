#include "benchmarks/BenchTable.h"
#include "benchmarks/Home.h"

#include <QCoreApplication>
#include <QProcess>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <stdexcept>

namespace {

constexpr int Rounds = 20;
constexpr int WizardRounds = 10;
constexpr int Tasks = 1000;

/// What one start of a program told of itself.
struct Start {
    double painted = 0; ///< milliseconds from the start to the first painted window
    double filled = 0;  ///< to the first page's rows; 0 when the program has none
    double peakMiB = 0;
};

Start Run(const std::string& program, const std::vector<std::string>& arguments) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        throw std::runtime_error("no pipe");
    const auto begun = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        std::vector<char*> words{const_cast<char*>(program.c_str())};
        for (const std::string& argument : arguments)
            words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        execv(program.c_str(), words.data());
        _exit(127);
    }
    close(ends[1]);
    Start start;
    FILE* told = fdopen(ends[0], "r");
    std::array<char, 64> line{};
    while (std::fgets(line.data(), line.size(), told)) {
        const std::chrono::duration<double, std::milli> elapsed = std::chrono::steady_clock::now() - begun;
        const std::string word(line.data());
        if (word == "painted\n")
            start.painted = elapsed.count();
        else if (word == "filled\n")
            start.filled = elapsed.count();
    }
    std::fclose(told);
    rusage usage{};
    int status = 0;
    wait4(child, &status, 0, &usage);
    if (status != 0 || start.painted == 0)
        throw std::runtime_error(program + " did not start");
    start.peakMiB = static_cast<double>(usage.ru_maxrss) / 1024;
    return start;
}

/// The console beside one that is linked without the library of wizards: what they differ by is what wizards
/// add to a start, which is to be no more than by what starts differ among themselves.
void MeasureWizards(BenchTable& table, const std::function<Start(const char*)>& run) {
    Samples with, without;
    for (int round = 0; round < WizardRounds; ++round) {
        with.Add(run("/BTaskMMC").painted);
        without.Add(run("/console_without_wizards").painted);
    }
    const double noise = without.Percentile(75) - without.Percentile(25);
    table.Add({.name = "Start, beside one without wizards",
               .unit = "ms",
               .ours = with.Median(),
               .reference = without.Median(),
               .maxOurs = without.Median() + noise});
}

void MeasureStart(BenchTable& table) {
    BenchHome home("empty");
    std::vector<devservice::Task> tasks;
    for (int i = 0; i < Tasks; ++i)
        tasks.push_back(devservice::MakeTask("task-" + std::to_string(i), "Task " + std::to_string(i)));
    home.Service().PutTasks(std::move(tasks));

    const std::string folder = QCoreApplication::applicationDirPath().toStdString();
    const auto console = [&](const char* program) {
        return Run(folder + program, {"--dev-report-start", "--dev-section=Task Manager"});
    };
    const auto bare = [&] { return Run(folder + "/bare_window", {}); };
    qunsetenv("QT_QPA_PLATFORM");
    Samples ours, reference, filled, memory, referenceMemory;
    for (int round = 0; round < Rounds; ++round) {
        const Start start = console("/BTaskMMC");
        const Start bareStart = bare();
        ours.Add(start.painted);
        filled.Add(start.filled);
        memory.Add(start.peakMiB);
        reference.Add(bareStart.painted);
        referenceMemory.Add(bareStart.peakMiB);
    }
    table.Add({.name = "Start to first painted window",
               .unit = "ms",
               .ours = ours.Median(),
               .reference = reference.Median(),
               .maxRatio = 1.6});
    table.Add({.name = "Start, peak memory",
               .unit = "MiB",
               .ours = memory.Median(),
               .reference = referenceMemory.Median(),
               .maxRatio = 1.8});
    table.Add({.name = "Start to first task row", .unit = "ms", .ours = filled.Median()});
    MeasureWizards(table, console);
}

// A program that we start inherits our peak of memory, and pays for our size: as long as that is small.
const BenchRegistration StartRegistration("start", MeasureStart, BenchRegistration::First);

} // namespace
