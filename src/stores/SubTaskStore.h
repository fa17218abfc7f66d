#pragma once

#include "stores/Database.h"
#include "stores/Statement.h"

#include <array>
#include <functional>

/// A row of a task's sub-task list. A null column is a null string.
struct SubTaskRecord {
    QString text1;
    QString text2;
    QString text3;
    QString text4;
    qint64 number5 = 0;
    qint64 number6 = 0;
    int subTaskNumber = 0; ///< what DeleteSubTask takes

    friend bool operator==(const SubTaskRecord&, const SubTaskRecord&) = default;
};

/// Called for each row, on the reading thread; false ends the walk. It copies what it needs and returns at
/// once.
using SubTaskCallback = std::function<bool(const SubTaskRecord&)>;

/// The sub-tasks of one task. One object a read, one thread at a time. An identifier that is no plain file
/// name (path separators, dots only) is refused as Failed.
class SubTaskStore {
public:
    explicit SubTaskStore(const QString& taskId, std::stop_token stop = {}, const OpenRule& rule = {});

    /// Walks the sub-tasks in one of two states, in their order; `stateA` and `stateB` may be equal.
    ReadResult EnumSubTasksByState(int stateA, int stateB, const SubTaskCallback& callback);

    /// Walks all sub-tasks in their order.
    ReadResult EnumAll(const SubTaskCallback& callback);

private:
    Database m_database;
    std::array<Statement, 6> m_statements;
};

/// Opens a store for one call; nothing is called back when the read cannot begin.
ReadResult EnumSubTasks(const QString& taskId, int stateA, int stateB, const SubTaskCallback& callback,
                        std::stop_token stop = {}, const OpenRule& rule = {});
ReadResult EnumSubTasks(const QString& taskId, const SubTaskCallback& callback, std::stop_token stop = {},
                        const OpenRule& rule = {});
