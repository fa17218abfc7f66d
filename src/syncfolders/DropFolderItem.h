#pragma once

#include "cards/TaskItem.h"
#include "syncfolders/DropFolderList.h"

class CDropFolder;
class SyncSummary;
class CTabPanel;
class ModeBox;
class RecordPanel;
class SyncCommands;
struct ListTable;
struct TaskRow;

/// The card of a sync folder. State and button come from one read.
class CDropFolderItem : public CTaskItem {
    Q_OBJECT

public:
    /// `commands` are those of its list.
    CDropFolderItem(const Console& console, SyncCommands& commands, const SyncRow& row, WallClock clock);

    /// Shows the folder as it was read.
    void Update(const SyncRow& row);
    /// Expands the card at the files that failed.
    void ShowFailedFiles();

    void OnExpanded() override;

private:
    /// A view of the folder's task.
    struct TaskView {
        RecordPanel* panel;
        std::function<ListTable(const TaskRow&)> tableOf;
    };

    void MakeViews();
    void ShowStatus();
    void ShowBusy();
    void ShowTabs();
    TaskRow TaskOf() const;
    void ShowVersions(const QString& file);

    const Console& m_console;
    SyncCommands& m_commands;
    WallClock m_clock;
    SyncRow m_row;
    CTabPanel* m_tabs = nullptr; ///< this and what is behind it are made when the card is first expanded
    SyncSummary* m_summary = nullptr;
    CDropFolder* m_versions = nullptr;
    ModeBox* m_mode = nullptr;
    std::vector<TaskView> m_views;
    bool m_failedWanted = false; ///< when the card is expanded next
    int m_disable;
    int m_open;
    int m_act;
    int m_failedFiles;
};
