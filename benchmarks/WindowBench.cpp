#include "app/Pages.h"
#include "benchmarks/BenchTable.h"
#include "benchmarks/Directories.h"
#include "benchmarks/Home.h"
#include "lanes/ThreadReader.h"
#include "page/WindowPrompts.h"
#include "service/ServiceClient.h"
#include "window/BTaskMMCDlg.h"
#include "zep/LiveCounters.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

using namespace std::chrono_literals;

namespace {

/// The longest time in milliseconds between two beats of a timer that wants to beat every millisecond.
class Heartbeat {
public:
    Heartbeat() {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Beat(); });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(1ms);
    }

    double LongestMs() const { return m_longest.count(); }
    void Restart() {
        m_last = Clock::now();
        m_longest = {};
    }

private:
    using Clock = std::chrono::steady_clock;

    void Beat() {
        const auto now = Clock::now();
        m_longest = std::max<std::chrono::duration<double, std::milli>>(m_longest, now - m_last);
        m_last = now;
    }

    QTimer m_timer;
    Clock::time_point m_last = Clock::now();
    std::chrono::duration<double, std::milli> m_longest{};
};

void RunFor(std::chrono::milliseconds time) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

std::vector<devservice::Task> MakeTasks(int count) {
    std::vector<devservice::Task> tasks;
    for (int i = 0; i < count; ++i)
        tasks.push_back(devservice::MakeTask("task-" + std::to_string(i), "Task " + std::to_string(i)));
    return tasks;
}

void MeasureStall(BenchTable& table) {
    BenchHome home("desktop");
    home.Service().SetFault(devservice::HttpFault::Delay, 5000ms);
    ServiceClient service;
    LiveCounters counters;
    WindowPrompts prompts;
    ThreadReader reader;
    CBTaskMMCDlg::Options options;
    options.pages = PagesOf(false, true);
    CBTaskMMCDlg window(service, counters, prompts, reader, options);
    window.show();
    RunFor(1s);
    Heartbeat heartbeat;
    RunFor(50ms);
    heartbeat.Restart();
    for (int round = 0; round < 2; ++round) {
        for (int section = 0; section < window.SectionCount(); ++section) {
            window.SelectSection(section);
            RunFor(700ms);
        }
    }
    RunFor(12s); // late answers come in, one each five seconds
    table.Add({.name = "Longest stall while pages open, service answers after 5 s",
               .unit = "ms",
               .ours = heartbeat.LongestMs(),
               .maxOurs = 25.0});
}

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

/// The share of a core in per cent that a console of its own takes over 60 s while it shows a section.
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

void MeasureIdle(BenchTable& table) {
    BenchHome home("empty");
    home.Service().PutTasks(MakeTasks(100));
    table.Add({.name = "Idle with 100 cards, share of a core over 60 s",
               .unit = "%",
               .ours = IdleShareOf("Task Manager"),
               .maxOurs = 0.1});
}

void MeasureDriveIdle(BenchTable& table) {
    BenchHome home("empty");
    home.Service().SetVirtualDirectories(MakeDirectories(100));
    table.Add({.name = "Idle with 100 virtual directories, share of a core over 60 s",
               .unit = "%",
               .ours = IdleShareOf("Cloud Drive"),
               .maxOurs = 0.1});
}

const BenchRegistration Stall("window stall", MeasureStall);
const BenchRegistration Idle("window idle", MeasureIdle);
const BenchRegistration DriveIdle("drive idle", MeasureDriveIdle);

} // namespace
