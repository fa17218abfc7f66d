#pragma once

#include "taskman/TaskManItem.h"

/// The card of a backup.
class CBackupItem : public CTaskManItem {
    Q_OBJECT

public:
    CBackupItem(const Console& console, CommandRunner& commands, const TaskRow& task);

protected:
    /// The box for the advanced mode, which is kept for the user.
    void FinishViews(CTabPanel& tabs) override;
};
