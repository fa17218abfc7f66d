#pragma once

#include "zep/LiveCounters.h"

#include <map>
#include <optional>
#include <span>
#include <vector>

/// Identifiers are the same whatever their letters' case.
struct IgnoringCase {
    bool operator()(const QString& left, const QString& right) const {
        return left.compare(right, Qt::CaseInsensitive) < 0;
    }
};

/// All that the live counters say at one moment.
struct LiveTraceSnapshot {
    std::map<TraceCounter, quint32> counters;             ///< a counter that is not named is unknown
    NetIoSize netIoTotal;                                 ///< octets since the service started
    std::map<QString, SubTaskCounts, IgnoringCase> tasks; ///< by task identifier
    std::vector<RunningSubTask> running;
};

/// The octets of livetrace.map, an array of little-endian 32-bit words (docs/live-trace.md).
namespace LiveTrace {

constexpr quint32 Magic = 0x4352544C; // "LTRC"
constexpr quint32 Version = 1;
constexpr quint32 Unknown = 0xFFFFFFFF;
constexpr quint32 CounterSlots = 64; ///< a TraceCounter is the number of its slot

/// A larger file is not believed, so that a damaged one cannot make a reader copy for long.
constexpr quint32 MaxWords = 1024 * 1024;

/// Places in the header, in words. Numbers of two words stand low word first.
enum HeaderWord : quint32 {
    MagicWord,
    VersionWord,
    SequenceWord, ///< odd while the writer is at work
    UsedWords,    ///< the words of header, tables and strings together
    InstanceWord, ///< two words: another value whenever the service starts anew
    SentWord = 6,
    ReceivedWord = 8,
    CounterTable = 10, ///< a table is two words: its place in words, the number of its rows
    TaskTable = 12,
    RunningTable = 14,
    StringPool = 16, ///< its rows are octets
    HeaderWords = 18,
};

/// A text is two words: its place in the pool and its length, in octets of UTF-8.
constexpr quint32 TextWords = 2;
constexpr quint32 RunningTexts = 7;
constexpr quint32 TaskRowWords = TextWords + 4;
constexpr quint32 RunningRowWords = RunningTexts * TextWords + 4;

struct Decoded {
    quint64 instance = 0;
    LiveTraceSnapshot snapshot;
};

/// The file's words for a snapshot with the sequence left at 0.
std::vector<quint32> Encode(const LiveTraceSnapshot& snapshot, quint64 instance);

/// What the words say; nothing unless every place and count lies inside them. The sequence is not looked at.
std::optional<Decoded> Decode(std::span<const quint32> words);

} // namespace LiveTrace
