// Labels: threads
#include "zep/LiveCounters.h"

#include "devservice/LiveTraceWriter.h"
#include "support/TestMain.h"
#include "zep/Text.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <set>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

using namespace LiveTrace;

const QString taskId = u"{0A1B2C3D-0000-4000-8000-00000000ABCD}"_s;

RunningSubTask Transfer(const QString& task, const QString& file) {
    return {task,         u"Docs"_s,     u"Upload"_s,   file,        u"/home"_s,
            u"Sending"_s, 5'000'000'000, 6'000'000'000, u"Chunk 3"_s};
}

LiveTraceSnapshot Sample() {
    LiveTraceSnapshot snapshot;
    snapshot.counters = {{TraceCounter::DriveLetter, u'Z'}, {TraceCounter::TaskTable, 7}};
    snapshot.netIoTotal = {5'000'000'000, 17};
    snapshot.tasks[taskId] = {10, 4, std::nullopt, 0};
    snapshot.running = {Transfer(taskId, u"\u20ac.txt"_s), Transfer(u"other"_s, QString())};
    return snapshot;
}

/// The words of `Sample` as the last publication left them.
std::vector<quint32> SampleWords() {
    std::vector<quint32> words = Encode(Sample(), 1);
    words[SequenceWord] = 2;
    return words;
}

} // namespace

class LiveCountersTest : public QObject {
    Q_OBJECT

    std::optional<QTemporaryDir> m_folder;

    std::filesystem::path File() const { return ToPath(m_folder->filePath(u"trace/livetrace.map"_s)); }

    void Write(std::span<const quint32> words, qsizetype octetsCut = 0) const {
        QByteArray octets;
        for (const quint32 word : words) {
            const quint32 little = qToLittleEndian(word);
            octets.append(reinterpret_cast<const char*>(&little), sizeof little);
        }
        octets.chop(octetsCut);
        std::filesystem::create_directories(File().parent_path());
        // In place, as a service does it: the file stays the one that readers have mapped.
        QFile file(File());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QCOMPARE(file.write(octets), octets.size());
        file.resize(octets.size()); // which Windows refuses while somebody has the file mapped
    }

    static QStringList RunningFiles(const LiveCounters& counters, const QString& task) {
        QStringList names;
        const bool known = counters.ZEPEnumTasksWithCallBackEx(task, [&names](const RunningSubTask& running) {
            names += running.fileName;
            return true;
        });
        return known ? names : QStringList(u"unknown"_s);
    }

    static bool IsKnown(const LiveCounters& counters) {
        return counters.ZEPTraceCounterGet(TraceCounter::TaskTable).has_value();
    }

private slots:
    void init() { m_folder.emplace(); }

    void answersWhatWasPublished() {
        LiveTraceWriter writer(File());
        const LiveCounters counters(File());
        QVERIFY(writer.Publish(Sample()));
        QCOMPARE(counters.ZEPTraceCounterGet(TraceCounter::DriveLetter), quint32(u'Z'));
        QCOMPARE(counters.ZEPTraceCounterGet(TraceCounter::TaskTable), 7U);
        QVERIFY(!counters.ZEPTraceCounterGet(TraceCounter(24)));
        QVERIFY(!counters.ZEPTraceCounterGet(TraceCounter(CounterSlots)));
        const SubTaskCounts counts = counters.ZEPTraceGetSTaskInfo(taskId.toLower());
        QCOMPARE(counts.total, 10U);
        QCOMPARE(counts.processed, 4U);
        QVERIFY(!counts.running);
        QCOMPARE(counts.pendingRetry, 0U);
        QVERIFY(!counters.ZEPTraceGetSTaskInfo(u"another"_s).total);
        QCOMPARE(RunningFiles(counters, {}), QStringList({u"\u20ac.txt"_s, QString()}));
        QCOMPARE(RunningFiles(counters, taskId.toLower()), QStringList(u"\u20ac.txt"_s));
        int calls = 0;
        QVERIFY(counters.ZEPEnumTasksWithCallBackEx({}, [&calls](const RunningSubTask& running) {
            ++calls;
            return running.bytesDone != 5'000'000'000 || running.bytesTotal != 6'000'000'000 ||
                   running.description != "Chunk 3"_L1 || running.status != "Sending"_L1;
        }));
        QCOMPARE(calls, 1);
    }

    void followsTheFile() {
        std::error_code refused;
        const LiveCounters counters(File());
        QVERIFY(!IsKnown(counters));
        Write({});
        QVERIFY(!IsKnown(counters));
        {
            LiveTraceWriter writer(File());
            QVERIFY(writer.Publish(Sample()));
            QVERIFY(IsKnown(counters));
            // Windows lets nobody remove or replace a file that is mapped.
            std::filesystem::remove(File(), refused);
            QCOMPARE(IsKnown(counters), bool(refused));
            QVERIFY(writer.Publish(Sample()));
            QVERIFY(IsKnown(counters));
        }
        QVERIFY(!IsKnown(counters));
        QCOMPARE(RunningFiles(counters, {}), QStringList());

        LiveTraceWriter(File().parent_path() / "new").Publish({});
        LiveTraceSnapshot other = Sample();
        other.counters[TraceCounter::TaskTable] = 8;
        LiveTraceWriter writer(File().parent_path() / "new");
        QVERIFY(writer.Publish(other));
        std::filesystem::rename(File().parent_path() / "new", File(), refused);
        QCOMPARE(counters.ZEPTraceCounterGet(TraceCounter::TaskTable).value_or(0), refused ? 0U : 8U);
    }

    void growsAndKeepsWithinBounds() {
        LiveTraceWriter writer(File());
        const LiveCounters counters(File());
        LiveTraceSnapshot snapshot = Sample();
        QVERIFY(writer.Publish(snapshot));
        QCOMPARE(RunningFiles(counters, {}).size(), 2);
        snapshot.running.assign(2000, Transfer(taskId, u"file"_s));
        QVERIFY(writer.Publish(snapshot));
        QCOMPARE(RunningFiles(counters, {}).size(), 2000);
        QVERIFY(writer.Publish(Sample()));
        QCOMPARE(RunningFiles(counters, {}).size(), 2);
        snapshot.running.front().fileName = QString(qsizetype(MaxWords) * 4, u'x');
        QVERIFY(!writer.Publish(snapshot));
        QCOMPARE(RunningFiles(counters, {}).size(), 2);
    }

    void damagedFilesAreUnknown_data() {
        const Columns<quint32, quint32> row("place", "word");
        const std::vector<quint32> words = SampleWords();
        const quint32 size = quint32(words.size());
        const quint32 taskRow = words[TaskTable];
        const quint32 runningRow = words[RunningTable];
        const quint32 poolSize = words[StringPool + 1];
        row("another file", MagicWord, 0);
        row("later version", VersionWord, Version + 1);
        row("being written", SequenceWord, 3);
        row("uses more than the file", UsedWords, size + 1);
        row("uses all there could be", UsedWords, Unknown);
        row("uses less than its tables", UsedWords, size - 1);
        row("uses no header", UsedWords, 0);
        row("counters in the header", CounterTable, 0);
        row("counters behind the file", CounterTable, size + 1);
        row("too many counters", CounterTable + 1, Unknown);
        row("tasks at the end", TaskTable, size);
        row("too many tasks", TaskTable + 1, size / TaskRowWords + 1);
        row("tasks that wrap to few", TaskTable + 1, 0x80000000U);
        row("too many running", RunningTable + 1, 0x10000000U);
        row("strings behind the file", StringPool, Unknown);
        row("strings too long", StringPool + 1, poolSize + 8);
        row("text behind the strings", taskRow, poolSize + 1);
        row("text too long", taskRow + 1, poolSize + 1);
        row("text that wraps", runningRow + 1, Unknown);
        row("texts that share octets", taskRow + 1, poolSize);
    }
    void damagedFilesAreUnknown() {
        auto [place, word] = Fetched<quint32, quint32>();
        std::vector<quint32> words = SampleWords();
        LiveCounters counters(File());
        Write(words);
        QVERIFY(IsKnown(counters));
        std::swap(words[place], word);
        words[SequenceWord] += 2;
        Write(words);
        QVERIFY(!IsKnown(counters));
        QVERIFY(!counters.ZEPTraceGetSTaskInfo(taskId).total);
        QCOMPARE(RunningFiles(counters, {}), QStringList(u"unknown"_s));
        QCOMPARE(counters.ZEPHttpGetLastNetIOSize().sent, 0U);
        std::swap(words[place], word);
        words[SequenceWord] = 8;
        Write(words);
        QVERIFY(IsKnown(counters));
    }

    void cutFilesAreUnknown() {
        const std::vector<quint32> words = SampleWords();
        const auto octets = qsizetype(words.size()) * 4;
        for (qsizetype cut = 1; cut <= octets; cut += 3) {
            Write(words);
            {
                const LiveCounters counters(File());
                QVERIFY(IsKnown(counters));
                Write(words, cut);
                QCOMPARE(IsKnown(counters), std::filesystem::file_size(File()) == quint64(octets));
            }
            Write(words, cut);
            QVERIFY2(!IsKnown(LiveCounters(File())), qPrintable(QString::number(cut)));
        }
    }

    void aDeadWritersFileIsUnknownUntilTheNextOne() {
        std::vector<quint32> words = SampleWords();
        words[SequenceWord] = 5;
        Write(words);
        const LiveCounters counters(File());
        for (int i = 0; i < 1000; ++i)
            QVERIFY(!IsKnown(counters));
        LiveTraceWriter writer(File());
        QVERIFY(writer.Publish(Sample()));
        QVERIFY(IsKnown(counters));
    }

    void netIoIsTheDifference() {
        struct Step {
            std::optional<NetIoSize> total; ///< none: the file says nothing any more
            quint64 instance;
            NetIoSize expected;
        };
        const std::vector<Step> steps{
            {{{1000, 5000}}, 1, {0, 0}},  {{{1500, 5001}}, 1, {500, 1}}, {{{1500, 5001}}, 1, {0, 0}},
            {{{100, 6000}}, 1, {0, 0}},   {{{110, 6002}}, 1, {10, 2}},   {{{9000, 9000}}, 2, {0, 0}},
            {{{9001, 9002}}, 2, {1, 2}},  {std::nullopt, 0, {0, 0}},     {{{9999, 9999}}, 2, {0, 0}},
            {{{10000, 9999}}, 2, {1, 0}},
        };
        LiveCounters counters(File());
        quint32 sequence = 0;
        for (const Step& step : steps) {
            std::vector<quint32> words = step.total ? Encode({{}, *step.total, {}, {}}, step.instance)
                                                    : std::vector<quint32>(HeaderWords);
            words[SequenceWord] = sequence += 2;
            Write(words);
            const NetIoSize size = counters.ZEPHttpGetLastNetIOSize();
            QCOMPARE(size.sent, step.expected.sent);
            QCOMPARE(size.received, step.expected.received);
        }
    }

    void readersNeverSeeHalfAPublication() {
        constexpr quint32 publications = 2000;
        LiveTraceWriter writer(File());
        const LiveCounters counters(File());
        std::jthread service([&writer] {
            // Always as many words, so that only their values tell two publications apart.
            for (quint32 i = 1; i <= publications; ++i) {
                LiveTraceSnapshot snapshot;
                snapshot.tasks[taskId] = {i, i, i, i};
                RunningSubTask running;
                running.bytesDone = i;
                snapshot.running.assign(1500, running);
                writer.Publish(snapshot);
            }
        });
        quint32 seen = 0;
        while (seen < publications) {
            const SubTaskCounts counts = counters.ZEPTraceGetSTaskInfo(taskId);
            if (!counts.total)
                continue;
            QVERIFY(counts.total >= seen);
            seen = *counts.total;
            QVERIFY(counts.processed == seen && counts.running == seen && counts.pendingRetry == seen);
            std::set<quint64> publicationsSeen;
            counters.ZEPEnumTasksWithCallBackEx({}, [&publicationsSeen](const RunningSubTask& running) {
                publicationsSeen.insert(running.bytesDone);
                return true;
            });
            QVERIFY(publicationsSeen.size() <= 1);
        }
    }
};

BTASK_TEST(LiveCountersTest);
#include "LiveCountersTest.moc"
