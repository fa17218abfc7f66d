#include "taskman/TaskRecordPanel.h"

void CTaskRecordPanel::SetTask(const TaskRow& task) {
    const bool other = task.id != m_task.id;
    m_task = task;
    if (other)
        Restart();
}
