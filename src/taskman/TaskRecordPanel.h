#pragma once

#include "list/RecordPanel.h"
#include "taskman/TaskList.h"

/// A view of one task's inner work in its expanded card.
class CTaskRecordPanel : public CRecordPanel {
    Q_OBJECT

public:
    /// Turns to another task; of no effect for the same one.
    void SetTask(const TaskRow& task);

protected:
    CTaskRecordPanel(const Console& console, const TaskRow& task, RecordPage page)
        : CRecordPanel(console, std::move(page)), m_task(task) {}

    const TaskRow& Task() const { return m_task; }

private:
    TaskRow m_task;
};
