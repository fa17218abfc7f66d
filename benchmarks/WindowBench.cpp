#include "app/Pages.h"
#include "benchmarks/BenchTable.h"
#include "benchmarks/Directories.h"
#include "benchmarks/Home.h"
#include "benchmarks/IdleShare.h"
#include "lanes/ThreadReader.h"
#include "page/WindowPrompts.h"
#include "service/ServiceClient.h"
#include "window/BTaskMMCDlg.h"
#include "zep/LiveCounters.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <chrono>

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
