#pragma once

#include "list/RecordPanel.h"
#include "plan/BackupSets.h"

class RestoreEndLine;
struct TaskRow;

/// The snapshots of a backup, to delete them and to restore from them; above them how the last restore that
/// was begun here has ended.
class CSnapshotsPanel : public RecordPanel {
    Q_OBJECT

public:
    CSnapshotsPanel(const Console& console, const TaskRow& task);

    /// Turns to another task, or to what has become of it.
    void Turn(const TaskRow& task);

private:
    CSnapshotsPanel(const Console& console, const TaskRow& task, std::shared_ptr<ProgressNote> steps);

    RestoreEndLine* m_end;
    std::shared_ptr<ProgressNote> m_steps; ///< what the read under way is at
};

/// A snapshot as a row of the table.
struct SnapshotRow {
    Snapshot snapshot;
    SetType type = SetType::Unknown;
    QString taskId;
    Snapshot newest; ///< of the set, as it was read

    bool operator==(const SnapshotRow&) const = default;
};
