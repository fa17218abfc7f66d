#pragma once

#include "lanes/PageLoader.h"
#include "page/BrenPanel.h"
#include "stores/SchedulerStore.h"
#include "taskman/TaskCommands.h"
#include "zep/LiveCounters.h"

#include <QSet>

class CBrenListCtrl;
struct Console;

/// A look at one task, read again every second: its state, the counts of its sub-tasks, when it ran and runs.
class CTaskSummary : public CBrenPanel {
    Q_OBJECT

public:
    CTaskSummary(const Console& console, QString taskId, const QString& type);

    /// Turns to another task; of no effect for the same one.
    void SetTask(const QString& taskId, const QString& type);

    void Activate() override;
    void Deactivate() override;
    void OnCommand(int command) override;

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
    /// Says why the last look at the task failed, in place of the usual status; empty when it did not.
    void TellFailure(const QString& failure);
    void ShowCounts(const SubTaskCounts& counts);
    void ShowStatus();
    void ShowToolbar(int state);
    void Send(TaskCommand command, const QString& taskId, int number);
    void AskToCancel();
    void SetDetail(int row, const QString& text);

    const Console& m_console;
    QString m_taskId;
    QString m_typeName;
    CBrenListCtrl* m_list = nullptr;
    int m_state = -1;
    QSet<int> m_inFlight; ///< the numbers of the commands that were sent and not yet answered
    std::optional<quint32> m_changes;
    SubTaskCounts m_counts;
    PageLoader m_loader;
};
