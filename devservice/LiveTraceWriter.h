#pragma once

#include "zep/LiveTraceLayout.h"

#include <filesystem>
#include <memory>

/// Publishes the live counters in the file that consoles map. One writer a file; it is made, repaired and
/// grown in place, so that a console that has it mapped goes on reading. Not for use from two threads at
/// once.
class LiveTraceWriter {
public:
    /// `file` is livetrace.map in the home path "trace"; its folder is made when missing.
    explicit LiveTraceWriter(std::filesystem::path file);

    /// Publishes that nothing runs and no counter is known.
    ~LiveTraceWriter();

    LiveTraceWriter(const LiveTraceWriter&) = delete;
    LiveTraceWriter& operator=(const LiveTraceWriter&) = delete;

    /// Replaces all that was published before. False when the file cannot be written or the snapshot is
    /// larger than readers accept; then readers keep what they had.
    bool Publish(const LiveTraceSnapshot& snapshot);

private:
    struct State;
    std::unique_ptr<State> m_state;
};
