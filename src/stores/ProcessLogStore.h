#pragma once

#include "stores/Database.h"
#include "stores/Statement.h"

#include <vector>

/// One finished run of a task. A null column is a null string.
struct ProcessLogRecord {
    QString startTime;
    QString stopTime;
    QString stopReason;
    int totalSubTasks = 0;
    int failedSubTasks = 0;
    int processedSubTasks = 0;

    friend bool operator==(const ProcessLogRecord&, const ProcessLogRecord&) = default;
};

/// The service's log of the runs of its tasks. One object a read, one thread at a time.
class ProcessLogStore {
public:
    explicit ProcessLogStore(std::stop_token stop = {}, const OpenRule& rule = {});

    /// Appends the task's runs to `list`; those read before a failure too.
    ReadResult FillProcessLog(const QString& taskId, std::vector<ProcessLogRecord>& list);

private:
    Database m_database;
    Statement m_rows;
};

/// Opens a store for one call.
ReadResult FillProcessLog(const QString& taskId, std::vector<ProcessLogRecord>& list,
                          std::stop_token stop = {}, const OpenRule& rule = {});
