#pragma once

#include "stores/TaskState.h"
#include "taskman/TaskRecordPanel.h"

/// Which of a task's sub-tasks a view lists.
enum class SubtaskView { Pending, PendingRetry };

/// The sub-tasks of a task that wait for their turn or for another try. Each can be deleted.
class CSubtaskPanel : public CTaskRecordPanel {
    Q_OBJECT

public:
    CSubtaskPanel(const Console& console, const TaskRow& task, SubtaskView view);

protected:
    void AddColumns(CBrenListCtrl& list) override;
    RowReader Reading() const override;

private:
    SubtaskView m_view;
};
