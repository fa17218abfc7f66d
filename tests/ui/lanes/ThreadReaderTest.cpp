// Labels: threads
#include "lanes/ThreadReader.h"
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
    /// A work that waits until the gate is open or it is told to stop.
    std::function<void(std::stop_token)> Waiting() {
        return [this](std::stop_token stop) {
            std::unique_lock lock(m_mutex);
            ++m_waiters;
            m_changed.wait(lock, stop, [this] { return m_open; });
            --m_waiters;
        };
    }
    int Waiters() const { return m_waiters; }

private:
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    bool m_open = false;
    std::atomic<int> m_waiters = 0;
};

void Nothing(std::stop_token) {}

std::function<void()> Note(QStringList& order, const char* name) {
    return [&order, name] { order.append(QLatin1String(name)); };
}

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
        reader.Submit(MakeJob(Lane::Service, gate.Waiting(), Note(order, "service 1")));
        reader.Submit(MakeJob(Lane::Service, Nothing, Note(order, "service 2")));
        reader.Submit(MakeJob(Lane::Databases, Nothing, Note(order, "databases")));
        QTRY_COMPARE(order.join(u','), u"databases"_s);
        gate.Open();
        QTRY_COMPARE(order.join(u','), u"databases,service 1,service 2"_s);
    }

    void runsJobsApartWithoutWaitingForEachOther() {
        Gate gate;
        QStringList order;
        ThreadReader reader;
        for (const char* name : {"a", "b", "c"})
            reader.Submit(MakeJob(Lane::Apart, gate.Waiting(), Note(order, name)));
        QTRY_COMPARE(gate.Waiters(), 3);
        // The end of one brings the next.
        reader.Submit(MakeJob(Lane::Apart, Nothing, [&] {
            order.append(u"free"_s);
            reader.Submit(MakeJob(Lane::Apart, Nothing, Note(order, "next")));
        }));
        QTRY_COMPARE(order, QStringList({u"free"_s, u"next"_s}));
        gate.Open();
        QTRY_COMPARE(order.size(), 5);
    }

    void overtakesByPriority() {
        ThreadReader reader;
        Gate gate;
        QStringList order;
        reader.Submit(MakeJob(Lane::Service, gate.Waiting(), [] {}));
        QTRY_COMPARE(gate.Waiters(), 1);
        ReadPriority first = ReadPriority::Front;
        Reader::Job hiddenLater = MakeJob(Lane::Service, Nothing, Note(order, "hidden"));
        hiddenLater.priority = [&first] { return first; };
        reader.Submit(hiddenLater);
        for (const auto& [priority, name] :
             {std::pair(ReadPriority::Front, "front"), {ReadPriority::Command, "command"}})
            reader.Submit(MakeJob(Lane::Service, Nothing, Note(order, name), priority));
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
        reader.Submit(MakeJob(Lane::Service, gate.Waiting(), [&] { busyDone = true; }));
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
        bool done = false;
        {
            ThreadReader reader;
            for (const Lane lane : {Lane::Service, Lane::Databases})
                reader.Submit(MakeJob(lane, never.Waiting(), [&] { done = true; }));
            QTRY_COMPARE(never.Waiters(), 2);
        }
        QCOMPARE(never.Waiters(), 0);
        QVERIFY(!done);
    }

    void carriesOutCommandsWhenItDies() {
        QStringList carriedOut;
        {
            ThreadReader reader;
            for (const QString& name : {u"first"_s, u"second"_s}) {
                const auto work = [&carriedOut, name](std::stop_token) { carriedOut << name; };
                reader.Submit(MakeJob(
                    Lane::Service, work, [] {}, ReadPriority::Command));
            }
        }
        QCOMPARE(carriedOut, QStringList({u"first"_s, u"second"_s}));
    }
};

BTASK_TEST(ThreadReaderTest);
#include "ThreadReaderTest.moc"
