#pragma once

#include "list/RecordTable.h"
#include "stores/AuditTraceStore.h"

#include <array>
#include <atomic>

/// A row of the service's trace, as it is shown. Its texts are UTF-8 that the rows it came from keep.
struct Trace {
    std::optional<SwatchColour> level; ///< that of the row before where its own is unknown
    QByteArrayView time;
    QByteArrayView message;

    QString LevelCell() const { return level ? Cell::Swatch(*level) : QString(); }
    QString TimeCell() const { return Cell::Plain(QString::fromUtf8(time)); }
    QString MessageCell() const { return Cell::Plain(QString::fromUtf8(message)); }

    friend bool operator==(const Trace&, const Trace&) = default;
};

/// Traces in one piece of memory for all their texts, since there may be a million of them.
class TraceBlock {
public:
    void push_back(const Trace& trace);
    Trace operator[](std::size_t row) const;
    std::size_t size() const { return m_places.size(); }
    bool empty() const { return m_places.empty(); }
    void shrink_to_fit();

private:
    struct Place {
        quint64 end; ///< of its texts: the time, then the message
        quint32 timeLength;
        qint8 level; ///< -1: none
    };

    QByteArray m_texts;
    std::vector<Place> m_places;
};

template <>
struct RecordsOf<Trace> {
    using Type = TraceBlock;
};

/// How many rows a walk has brought so far, by their level. Any thread.
class TraceCounts {
public:
    void Add(const Trace& trace) { ++m_counts[trace.level ? std::size_t(*trace.level) : Levels]; }
    int Of(SwatchColour level) const { return m_counts[std::size_t(level)]; }
    int Total() const;

private:
    static constexpr std::size_t Levels = 3;
    std::array<std::atomic<int>, Levels + 1> m_counts{}; ///< the last: of those without a level
};

// The columns, by number.
inline constexpr int TraceLevelColumn = 0;
inline constexpr int TraceTimeColumn = 1;
inline constexpr int TraceMessageColumn = 2;

using TraceWalk = std::function<ReadResult(const AuditCallback& callback, std::stop_token stop)>;

/// The table of the traces that `walk` brings, newest first; each is counted where counts are given.
RecordTable<Trace> TraceRows(RecordPage page, TraceWalk walk, std::shared_ptr<TraceCounts> counts = {});

/// Copies all rows that the view has read, off the window's thread: these columns between four blanks.
/// `lastEnd` stands behind the last row.
void CopyTraces(RecordView& view, std::vector<int> columns, const QString& lastEnd,
                const std::function<void()>& done);
