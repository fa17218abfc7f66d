#pragma once

#include "lanes/PageLoader.h"
#include "page/BrenPanel.h"
#include "stores/SchedulerStore.h"
#include "taskman/TaskCommands.h"
#include "zep/LiveCounters.h"

class CBrenListCtrl;

/// A look at one task, read again every second: its state, the counts of its sub-tasks, when it ran and runs.
class CTaskSummary : public CBrenPanel {
    Q_OBJECT

public:
    CTaskSummary(const Console& console, QString taskId, const QString& type);

    /// Turns to another task; of no effect for the same one.
    void SetTask(const QString& taskId, const QString& type);

    void Activate() override;
    void Reload() override { Refresh(); }

signals:
    void Deleted(); ///< the deletion was sent, answered or not

protected:
    void CreatePanel() override;

private:
    struct Reading {
        TaskLookup lookup;
        std::optional<quint32> changes; ///< of the task table, when the counts were read
        std::optional<SubTaskCounts> counts;
    };

    void Refresh();
    void Show(const Reading& reading);
    void ShowCounts(const SubTaskCounts& counts);
    void ShowStatus();
    void ShowToolbar(int state);
    void Send(const QString& key, TaskCommand command);
    void CancelTask();
    void SetDetail(int row, const QString& text);

    QString m_taskId;
    QString m_typeName;
    CBrenListCtrl* m_list = nullptr;
    int m_state = -1;
    std::optional<quint32> m_changes;
    SubTaskCounts m_counts;
};
