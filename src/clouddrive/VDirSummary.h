#pragma once

#include "page/BrenPanel.h"
#include "service/LoginCard.h"
#include "service/VirtualDirectories.h"

class CBrenListCtrl;
class LinkLabel;
class VDirCommands;

/// What is known of one virtual directory: the shown fields of its login card, and whether its files are sent
/// in chunks.
class CVDirSummary : public CBrenPanel {
    Q_OBJECT

public:
    /// `commands` are those of its list.
    CVDirSummary(const Console& console, VDirCommands& commands, const VDirRecord& record);

    void SetRecord(const VDirRecord& record);

    void Activate() override;
    void Reload() override;

protected:
    void CreatePanel() override;

private:
    struct Facts {
        std::optional<std::vector<CardField>> card;
        ChunkSettings chunks;
    };

    static Facts ReadFacts(const ServiceClient& service, const VDirRecord& record,
                           const std::stop_token& stop);
    void Show(const Facts& facts);
    void ShowToolbar();

    VDirCommands& m_commands;
    VDirRecord m_record;
    LinkLabel* m_chunks = nullptr;
    CBrenListCtrl* m_card = nullptr;
};
