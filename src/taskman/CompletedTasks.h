#pragma once

#include "list/RecordPanel.h"

/// The tasks that have run for the last time. Each can be deleted.
class CCompletedTasks : public CRecordPanel {
    Q_OBJECT

public:
    explicit CCompletedTasks(const Console& console);

protected:
    void AddColumns(CBrenListCtrl& list) override;
    RowReader Reading() const override;
    std::vector<FrameAction> Toolbar() override;
};
