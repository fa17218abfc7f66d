#pragma once

#include "plan/BackupRuns.h"
#include "taskman/TaskManItem.h"

/// The card of a backup: beside the task, how its last runs went.
class CBackupItem : public CTaskManItem {
    Q_OBJECT

public:
    CBackupItem(const Console& console, CommandRunner& commands, const TaskRow& task);

    /// What of the row its log hangs on: another value means that the log is to be read again.
    struct RunMark {
        QString id;
        QString lastRun;
        QString nextRun;
        TaskState state = TaskState::Pending;

        bool operator==(const RunMark&) const = default;
    };
    RunMark Mark() const;
    bool WantsRuns() const { return m_runsOf != Mark(); }
    /// What the log told when the row was that; nothing when it is another one by now.
    void SetRuns(const RunMark& of, const BackupRuns& runs);

    /// In whole days; none unless there is too long no clean run.
    std::optional<qint64> Overdue() const;

protected:
    /// The box for the advanced mode, which is kept for the user.
    void FinishViews(CTabPanel& tabs) override;
    void OnUpdated() override;

private:
    /// Those of the last read of this task's log, until the next one.
    BackupRuns KnownRuns() const;

    std::optional<RunMark> m_runsOf;
    BackupRuns m_runs;
};
