#pragma once

#include "cards/CardPanel.h"
#include "syncfolders/SyncList.h"

class SyncCommands;

/// The clock by which the time to the next run is counted.
using WallClock = std::function<QTime()>;

/// The sync folders as cards.
class CDropFolderList : public CardPanel {
    Q_OBJECT

public:
    explicit CDropFolderList(const Console& console, WallClock clock = &QTime::currentTime);

    SyncCommands& Folders() { return *m_commands; }

protected:
    void TellRead(const ReadResult& read) override;

private:
    QWidget* MakeEmptyView();

    std::shared_ptr<SyncMemory> m_memory = std::make_shared<SyncMemory>();
    SyncCommands* m_commands;
    QTimer m_next; ///< reads again soon while tasks are still to be asked for
};
