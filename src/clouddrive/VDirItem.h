#pragma once

#include "cards/TaskItem.h"
#include "clouddrive/VDirList.h"

class CVDirSummary;
class VDirCommands;

/// The card of a virtual directory.
class CVDirItem : public CTaskItem {
    Q_OBJECT

public:
    /// `commands` are those of its list.
    CVDirItem(const Console& console, VDirCommands& commands, const VDirRow& directory);

    const VDirRecord& Record() const { return m_directory.record; }
    /// Shows the directory as it was read.
    void Update(const VDirRow& directory);
    /// Shows that nobody has told for a while how the directory is.
    void ShowUnanswered();
    /// It has another name now.
    void Rename(const QString& name);
    /// Shows what its provider is called, as far as that is known.
    void ShowProvider();
    /// Shows its state as it was read, or how its login goes on.
    void ShowStatus();

    void OnExpanded() override;

private:
    void ShowBusy();

    const Console& m_console;
    VDirCommands& m_commands;
    VDirRow m_directory;
    CVDirSummary* m_summary = nullptr; ///< made when the card is first expanded
    int m_dismount;
    int m_login;
    int m_open;
};
