#include "zep/LiveTraceLayout.h"

#include "zep/Text.h"

#include <QtEndian>

#include <algorithm>
#include <utility>

namespace LiveTrace {

namespace {

using Words = std::vector<quint32>;

void PutLong(Words& words, quint64 value) {
    words.push_back(quint32(value));
    words.push_back(quint32(value >> 32));
}

void PutText(Words& words, QByteArray& pool, const QString& text) {
    const QByteArray utf8 = ZEPUnicodeToUTF8(text);
    words.push_back(quint32(pool.size()));
    words.push_back(quint32(utf8.size()));
    pool.append(utf8);
}

void BeginTable(Words& words, HeaderWord table, size_t rows) {
    words[table] = quint32(words.size());
    words[table + 1] = quint32(rows);
}

/// One table whose rows have been found to lie inside the words.
struct Table {
    std::span<const quint32> words;
    size_t rows = 0;
};

quint64 LongAt(std::span<const quint32> words, size_t at) {
    return words[at] | quint64(words[at + 1]) << 32;
}

std::optional<Table> FindTable(std::span<const quint32> words, HeaderWord table, quint32 rowWords) {
    const quint64 begin = words[table];
    const quint64 rows = words[table + 1];
    if (begin < HeaderWords || begin > words.size() || rows * rowWords > words.size() - begin)
        return std::nullopt;
    return Table{words.subspan(size_t(begin), size_t(rows * rowWords)), size_t(rows)};
}

std::optional<QByteArray> FindPool(std::span<const quint32> words) {
    const quint64 begin = words[StringPool];
    const quint64 octets = words[StringPool + 1];
    if (begin < HeaderWords || begin > words.size() || octets > (words.size() - begin) * sizeof(quint32))
        return std::nullopt;
    QByteArray pool(qsizetype((octets + 3) / 4 * 4), Qt::Uninitialized);
    for (qsizetype at = 0; at < pool.size(); at += 4)
        qToLittleEndian(words[size_t(begin) + size_t(at / 4)], pool.data() + at);
    pool.truncate(qsizetype(octets));
    return pool;
}

/// The texts of rows; it remembers a text that lies outside of the pool.
class TextReader {
public:
    explicit TextReader(QByteArray pool) : m_pool(std::move(pool)) {}

    QString At(std::span<const quint32> row, quint32 text) {
        const quint64 begin = row[text * TextWords];
        const quint64 size = row[text * TextWords + 1];
        // Rows that all name the whole pool would decode to far more than the file holds.
        m_read += size;
        if (begin + size > quint64(m_pool.size()) || m_read > quint64(m_pool.size())) {
            m_bad = true;
            return {};
        }
        return ZEPUTF8ToUnicode(QByteArrayView(m_pool).sliced(qsizetype(begin), qsizetype(size)));
    }

    bool Failed() const { return m_bad; }

private:
    QByteArray m_pool;
    quint64 m_read = 0;
    bool m_bad = false;
};

std::optional<quint32> Known(quint32 value) {
    return value == Unknown ? std::nullopt : std::optional(value);
}

SubTaskCounts ReadCounts(std::span<const quint32> words) {
    return {Known(words[0]), Known(words[1]), Known(words[2]), Known(words[3])};
}

RunningSubTask ReadRunning(std::span<const quint32> row, TextReader& texts) {
    constexpr quint32 amounts = RunningTexts * TextWords;
    RunningSubTask task;
    task.taskId = texts.At(row, 0);
    task.taskName = texts.At(row, 1);
    task.operation = texts.At(row, 2);
    task.fileName = texts.At(row, 3);
    task.target = texts.At(row, 4);
    task.status = texts.At(row, 5);
    task.description = texts.At(row, 6);
    task.bytesDone = LongAt(row, amounts);
    task.bytesTotal = LongAt(row, amounts + 2);
    return task;
}

} // namespace

std::vector<quint32> Encode(const LiveTraceSnapshot& snapshot, quint64 instance) {
    Words words(HeaderWords, 0);
    QByteArray pool;
    BeginTable(words, CounterTable, CounterSlots);
    words.resize(words.size() + CounterSlots, Unknown);
    for (const auto& [counter, value] : snapshot.counters) {
        if (quint32(counter) < CounterSlots)
            words[HeaderWords + quint32(counter)] = value;
    }

    BeginTable(words, TaskTable, snapshot.tasks.size());
    for (const auto& [taskId, counts] : snapshot.tasks) {
        PutText(words, pool, taskId);
        for (const auto& count : {counts.total, counts.processed, counts.running, counts.pendingRetry})
            words.push_back(count.value_or(Unknown));
    }

    BeginTable(words, RunningTable, snapshot.running.size());
    for (const RunningSubTask& task : snapshot.running) {
        for (const QString* text : {&task.taskId, &task.taskName, &task.operation, &task.fileName,
                                    &task.target, &task.status, &task.description})
            PutText(words, pool, *text);
        PutLong(words, task.bytesDone);
        PutLong(words, task.bytesTotal);
    }

    BeginTable(words, StringPool, size_t(pool.size()));
    pool.append((4 - pool.size() % 4) % 4, '\0');
    for (qsizetype at = 0; at < pool.size(); at += 4)
        words.push_back(qFromLittleEndian<quint32>(pool.constData() + at));

    words[MagicWord] = Magic;
    words[VersionWord] = Version;
    words[UsedWords] = quint32(words.size());
    const auto putHeader = [&words](HeaderWord at, quint64 value) {
        words[at] = quint32(value);
        words[at + 1] = quint32(value >> 32);
    };
    putHeader(InstanceWord, instance);
    putHeader(SentWord, snapshot.netIoTotal.sent);
    putHeader(ReceivedWord, snapshot.netIoTotal.received);
    return words;
}

std::optional<Decoded> Decode(std::span<const quint32> words) {
    if (words.size() < HeaderWords || words[MagicWord] != Magic || words[VersionWord] != Version ||
        words[UsedWords] > words.size())
        return std::nullopt;
    words = words.first(std::max<quint32>(words[UsedWords], HeaderWords));
    const auto counters = FindTable(words, CounterTable, 1);
    const auto tasks = FindTable(words, TaskTable, TaskRowWords);
    const auto running = FindTable(words, RunningTable, RunningRowWords);
    auto pool = FindPool(words);
    if (!counters || !tasks || !running || !pool)
        return std::nullopt;

    TextReader texts(std::move(*pool));
    Decoded decoded{LongAt(words, InstanceWord), {}};
    LiveTraceSnapshot& snapshot = decoded.snapshot;
    snapshot.netIoTotal = {LongAt(words, SentWord), LongAt(words, ReceivedWord)};
    for (size_t slot = 0; slot < counters->rows; ++slot) {
        if (const auto value = Known(counters->words[slot]))
            snapshot.counters.emplace(TraceCounter(slot), *value);
    }
    for (size_t i = 0; i < tasks->rows && !texts.Failed(); ++i) {
        const auto row = tasks->words.subspan(i * TaskRowWords, TaskRowWords);
        snapshot.tasks.emplace(texts.At(row, 0), ReadCounts(row.subspan(TextWords)));
    }
    for (size_t i = 0; i < running->rows && !texts.Failed(); ++i)
        snapshot.running.push_back(
            ReadRunning(running->words.subspan(i * RunningRowWords, RunningRowWords), texts));
    return texts.Failed() ? std::nullopt : std::optional(std::move(decoded));
}

} // namespace LiveTrace
