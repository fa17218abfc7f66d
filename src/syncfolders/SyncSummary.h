#pragma once

#include "cards/SummaryPanel.h"
#include "stores/HistoryStore.h"
#include "syncfolders/DropFolderList.h"

/// What is known of one sync folder: where it is, how its task stands, which files changed last. Its location
/// and its files open by click and by key.
class SyncSummary : public SummaryPanel {
    Q_OBJECT

public:
    /// `commands` are those of its list.
    SyncSummary(const Console& console, SyncCommands& commands, const SyncRow& row, WallClock clock);

    void SetRow(const SyncRow& row);

    void Activate() override;
    void Reload() override;

signals:
    void FailedFilesWanted();

protected:
    void CreatePanel() override;
    void OnRowClicked(const TakenRow& row) override;

private:
    struct Facts {
        SubTaskCounts counts;
        ReadResult read;
        std::vector<HistoryRecord> changes;
    };

    std::vector<SummaryRow> Rows() const;
    std::optional<QString> StatusDetail() const;
    void AddChanges(std::vector<SummaryRow>& rows) const;
    void Show(const Facts& facts);
    void ShowToolbar();

    SyncCommands& m_commands;
    SyncRow m_row;
    WallClock m_clock;
    std::optional<Facts> m_facts; ///< as last read
};
