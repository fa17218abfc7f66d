#include "benchmarks/BenchTable.h"
#include "benchmarks/ConsoleParts.h"
#include "lanes/ThreadReader.h"
#include "settings/SettingsMgr.h"

#include <QApplication>
#include <QElapsedTimer>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds AnswerTime = 200ms;
constexpr int Rounds = 8;

void RunUntil(const std::function<bool()>& holds) {
    QElapsedTimer since;
    since.start();
    while (!holds()) {
        if (since.hasExpired(60'000))
            throw std::runtime_error("the service never answered");
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
}

/// A command given while a page of all settings is being read, each time at another moment of it.
void MeasureCommand(BenchTable& table) {
    ConsoleParts bench("empty");
    bench.home.Service().SetFault(devservice::HttpFault::Delay, AnswerTime);
    ThreadReader reader;
    const Console console = bench.On(reader);
    CSettingsMgr page(console);
    page.Activate();
    PageLoader loader(reader, page);
    Samples answered;
    for (int round = 0; round < Rounds; ++round) {
        page.Reload();
        const std::size_t asked = bench.home.Service().Requests().size();
        QTimer beats;
        beats.start(1ms);
        RunUntil([&] { return bench.home.Service().Requests().size() > asked + 2; });
        QElapsedTimer moment;
        moment.start();
        RunUntil([&] { return moment.hasExpired(round * AnswerTime.count() / Rounds); });
        bool done = false;
        answered.Add(MillisecondsOf([&] {
            loader.Command(
                Lane::Service,
                [service = bench.client](std::stop_token stop) { return service.StartTaskNow(u"T"_s, stop); },
                [&done](const Loaded<ServiceAnswer>&) { done = true; });
            RunUntil([&done] { return done; });
        }));
    }
    table.Add({.name = "A command while 30 settings are read at 200 ms each",
               .unit = "ms",
               .ours = answered.Percentile(100),
               .maxOurs = 450.0});
}

const BenchRegistration Command("settings command", MeasureCommand);

} // namespace
