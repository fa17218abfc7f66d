#pragma once

#include "taskman/TaskRecordPanel.h"

/// The service's trace of what it did for a task, newest first.
class CTaskAudit : public CTaskRecordPanel {
    Q_OBJECT

public:
    CTaskAudit(const Console& console, const TaskRow& task);

protected:
    void AddColumns(CBrenListCtrl& list) override;
    RowReader Reading() const override;
    std::vector<FrameAction> Toolbar() override;
    void OnReadEnded() override { EnableActions(); }

private:
    void EnableActions();
    void CopyAll();
    void AskToDeleteAll();
    void DeleteAll(const QString& taskId);

    bool m_deleting = false;
    bool m_copying = false;
};
