#include "ui/ThreadReader.h"
#include "support/TestMain.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Something that a test opens and a work waits for.
class Gate {
public:
    void Open() {
        const std::lock_guard lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }
    /// False when told to stop before the gate was opened.
    bool Wait(std::stop_token stop) {
        std::unique_lock lock(m_mutex);
        return m_changed.wait(lock, stop, [this] { return m_open; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    bool m_open = false;
};

Reader::Job MakeJob(Lane lane, std::function<void(std::stop_token)> work, std::function<void()> done,
                    ReadPriority priority = ReadPriority::Front) {
    return {lane, [priority] { return priority; }, std::stop_source(), std::move(work), std::move(done)};
}

} // namespace

class ThreadReaderTest : public QObject {
    Q_OBJECT

private slots:
    void handsResultsOverWithoutALockOfTheCaller() {
        ThreadReader reader;
        constexpr int jobs = 2000;
        int done = 0;
        qint64 sum = 0;
        for (int number = 0; number < jobs; ++number) {
            auto result = std::make_shared<std::vector<int>>();
            auto work = [result, number](std::stop_token) { *result = {number, number}; };
            reader.Submit(MakeJob(number % 2 ? Lane::Service : Lane::Databases, work, [&, result] {
                QCOMPARE(QThread::currentThread(), qApp->thread());
                sum += result->at(0) + result->at(1);
                ++done;
            }));
        }
        QCOMPARE(done, 0);
        QTRY_COMPARE(done, jobs);
        QCOMPARE(sum, qint64(jobs) * (jobs - 1));
    }

    void runsLanesSideBySideAndEachInOrder() {
        ThreadReader reader;
        Gate gate;
        QStringList order;
        reader.Submit(MakeJob(
            Lane::Service, [&](std::stop_token stop) { gate.Wait(stop); },
            [&] { order.append(u"service 1"_s); }));
        reader.Submit(MakeJob(
            Lane::Service, [](std::stop_token) {}, [&] { order.append(u"service 2"_s); }));
        reader.Submit(MakeJob(
            Lane::Databases, [](std::stop_token) {},
            [&] {
                order.append(u"databases"_s);
                gate.Open();
            }));
        QTRY_COMPARE(order.join(u','), u"databases,service 1,service 2"_s);
    }

    void overtakesByPriority() {
        ThreadReader reader;
        Gate gate;
        QStringList order;
        std::atomic<bool> started = false;
        reader.Submit(MakeJob(
            Lane::Service,
            [&](std::stop_token stop) {
                started = true;
                gate.Wait(stop);
            },
            [] {}));
        QTRY_VERIFY(started);
        ReadPriority first = ReadPriority::Front;
        Reader::Job hiddenLater = MakeJob(
            Lane::Service, [](std::stop_token) {}, [&] { order.append(u"hidden"_s); });
        hiddenLater.priority = [&first] { return first; };
        reader.Submit(hiddenLater);
        for (const auto& [priority, name] :
             {std::pair(ReadPriority::Front, "front"), {ReadPriority::Command, "command"}})
            reader.Submit(MakeJob(
                Lane::Service, [](std::stop_token) {},
                [&order, name = name] { order.append(QLatin1String(name)); }, priority));
        first = ReadPriority::Hidden;
        gate.Open();
        QTRY_COMPARE(order.join(u','), u"command,front,hidden"_s);
    }

    void endsAStoppedJobThatWaitsBehindABusyOne() {
        ThreadReader reader;
        Gate gate;
        bool busyDone = false;
        bool ran = false;
        int stoppedDone = 0;
        reader.Submit(MakeJob(
            Lane::Service, [&](std::stop_token stop) { gate.Wait(stop); }, [&] { busyDone = true; }));
        Reader::Job job = MakeJob(
            Lane::Service, [&](std::stop_token) { ran = true; }, [&] { ++stoppedDone; });
        std::stop_source stop = job.stop;
        reader.Submit(std::move(job));
        std::jthread stopper([&stop] { stop.request_stop(); });
        stopper.join();
        QTRY_COMPARE(stoppedDone, 1);
        QVERIFY(!busyDone);
        gate.Open();
        QTRY_VERIFY(busyDone);
        QVERIFY(!ran);
        QCOMPARE(stoppedDone, 1);
    }

    void stopsWhatRunsWhenItDies() {
        Gate never;
        std::atomic<int> stopped = 0;
        std::atomic<int> started = 0;
        bool done = false;
        {
            ThreadReader reader;
            for (const Lane lane : {Lane::Service, Lane::Databases})
                reader.Submit(MakeJob(
                    lane,
                    [&](std::stop_token stop) {
                        ++started;
                        stopped += never.Wait(stop) ? 0 : 1;
                    },
                    [&] { done = true; }));
            QTRY_COMPARE(started.load(), 2);
        }
        QCOMPARE(stopped.load(), 2);
        QVERIFY(!done);
    }

    void carriesOutCommandsWhenItDies() {
        QStringList carriedOut;
        {
            ThreadReader reader;
            for (const char* name : {"first", "second"}) {
                Reader::Job job = MakeJob(
                    Lane::Service,
                    [&carriedOut, name](std::stop_token) { carriedOut << QString::fromLatin1(name); }, [] {});
                job.priority = [] { return ReadPriority::Command; };
                reader.Submit(std::move(job));
            }
        }
        QCOMPARE(carriedOut, QStringList({u"first"_s, u"second"_s}));
    }
};

BTASK_TEST(ThreadReaderTest);
#include "ThreadReaderTest.moc"
