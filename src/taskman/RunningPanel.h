#pragma once

#include "taskman/TaskRecordPanel.h"

/// The sub-tasks of a task that are being processed right now.
class CRunningPanel : public CTaskRecordPanel {
    Q_OBJECT

public:
    CRunningPanel(const Console& console, const TaskRow& task);

protected:
    void AddColumns(CBrenListCtrl& list) override;
    RowReader Reading() const override;
};

/// What the whole service is doing right now.
class CSysRunningPanel : public CRecordPanel {
    Q_OBJECT

public:
    explicit CSysRunningPanel(const Console& console);

protected:
    void AddColumns(CBrenListCtrl& list) override;
    RowReader Reading() const override;
};
