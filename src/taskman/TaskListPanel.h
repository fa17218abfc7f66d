#pragma once

#include "taskman/TaskList.h"
#include "ui/ExpandableItemList.h"
#include "ui/PageLoader.h"

struct Console;

/// The tasks of one filter as cards, read again every five seconds.
class CTaskListPanel : public CExpandableItemList {
    Q_OBJECT

public:
    CTaskListPanel(const Console& console, TaskFilter filter);

    void Activate() override;
    void Deactivate() override;
    void OnCommand(int command) override;

protected:
    void CreatePanel() override;
    void OnAllShown() override;

private:
    void Refresh();
    void Show(const TaskList& list);
    /// Says why the last read failed, in place of the page's own status text; empty when it did not.
    void TellFailure(const QString& failure);
    void ShowStatus();

    const Console& m_console;
    TaskFilter m_filter;
    QString m_failure;
    PageLoader m_loader;
};
