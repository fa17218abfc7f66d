#pragma once

#include "taskman/TaskRecordPanel.h"

/// How the runs of a task went.
class CHistoryPanel : public CTaskRecordPanel {
    Q_OBJECT

public:
    CHistoryPanel(const Console& console, const TaskRow& task);

protected:
    void AddColumns(CBrenListCtrl& list) override;
    RowReader Reading() const override;
};
