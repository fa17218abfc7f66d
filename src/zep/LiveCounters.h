#pragma once

#include <QString>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

enum class TraceCounter : quint32 { DriveLetter = 23, TaskTable = 26 };

/// Counts of a task's sub-tasks; each is empty while the service does not know it.
struct SubTaskCounts {
    std::optional<quint32> total;
    std::optional<quint32> processed;
    std::optional<quint32> running;
    std::optional<quint32> pendingRetry;
};

/// One transfer or other sub-task that runs now.
struct RunningSubTask {
    QString taskId;
    QString taskName;
    QString operation; ///< "Upload", "Download" or another operation's name
    QString fileName;
    QString target;
    QString status;
    quint64 bytesDone = 0;
    quint64 bytesTotal = 0;
    QString description; ///< as the service words it; that of a part of a file contains "Chunk"

    friend bool operator==(const RunningSubTask&, const RunningSubTask&) = default;
};

struct NetIoSize {
    quint64 sent = 0;
    quint64 received = 0;
};

/// The service's live counters, read from the file that it maps. Every answer is "unknown" while the file is
/// missing, torn or not of the known layout; a file that is replaced is picked up. Any thread may call; a
/// call returns within milliseconds.
class LiveCounters {
public:
    LiveCounters(); ///< of livetrace.map in the home path "trace"
    explicit LiveCounters(std::filesystem::path file);
    ~LiveCounters();

    LiveCounters(const LiveCounters&) = delete;
    LiveCounters& operator=(const LiveCounters&) = delete;

    std::optional<quint32> ZEPTraceCounterGet(TraceCounter counter) const;
    SubTaskCounts ZEPTraceGetSTaskInfo(const QString& taskId) const;

    /// Calls back for each running sub-task of the task, of all tasks when `taskId` is empty, until the
    /// callback says false. False when nothing is known.
    bool ZEPEnumTasksWithCallBackEx(const QString& taskId,
                                    const std::function<bool(const RunningSubTask&)>& callback) const;

    /// Octets sent and received since the last call; zeros at the first call, when nothing is known and when
    /// the counters restarted.
    NetIoSize ZEPHttpGetLastNetIOSize();

private:
    struct State;
    std::unique_ptr<State> m_state;
};
